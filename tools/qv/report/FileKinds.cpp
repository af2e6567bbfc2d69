#include "tools/qv/report/FileKinds.h"

#include <algorithm>
#include <string>

namespace qv::tool {
namespace {

constexpr bool kPicture = true;

constexpr FileKind kUnknown = {"", "File", "", ""};

// Sorted by extension.
constexpr FileKind kKinds[] = {
    {".7z", "7z archive", "7z", "Many files in one, packed tightly."},
    {".avif", "AVIF picture", "AVIF", "A picture packed as a frame of AV1 video: very small.", kPicture},
    {".bmp", "Bitmap picture", "Bitmap", "A picture as plain rows of pixels, large and exact.", kPicture},
    {".c", "C source", "C source", "Program text in the language C."},
    {".cab", "Cabinet archive", "Cabinet", "Many files in one, the archive of Windows installations."},
    {".cmake", "CMake script", "CMake", "Describes a build for CMake."},
    {".cpp", "C++ source", "C++", "Program text in the language C++."},
    {".css", "Style sheet", "Style sheet", "How a web page is to look."},
    {".csv", "CSV table", "CSV", "A table as text: a line a row, commas between the fields."},
    {".db", "Database", "Database", "Records kept by a program, readable by that program."},
    {".dll", "Windows library", "library", "Program code that several programs share."},
    {".doc", "Word document", "Word document", "A text document in the older binary form."},
    {".docx", "Word document", "Word document", "A text document: XML and pictures in a ZIP archive."},
    {".emf", "Metafile picture", "Metafile", "A picture as a list of drawing steps, sharp at any size."},
    {".exe", "Windows program", "program", "A program that runs on Windows."},
    {".flac", "FLAC sound", "FLAC", "Sound, packed without any loss."},
    {".gif", "GIF picture", "GIF", "A picture of at most 256 colours, perhaps moving.", kPicture},
    {".gz", "gzip archive", "gzip", "One file, packed."},
    {".h", "C or C++ header", "header", "Declarations that several sources share."},
    {".htm", "Web page", "Web page", "Text with links and pictures, for a browser."},
    {".html", "Web page", "Web page", "Text with links and pictures, for a browser."},
    {".ico", "Icon picture", "Icon", "The same small picture in several sizes.", kPicture},
    {".ini", "Settings", "Settings", "A program's settings as text, in sections."},
    {".iso", "Disc image", "Disc image", "Everything on a disc, byte for byte."},
    {".jpeg", "JPEG picture", "JPEG", "A photograph, packed with a loss that hardly shows.", kPicture},
    {".jpg", "JPEG picture", "JPEG", "A photograph, packed with a loss that hardly shows.", kPicture},
    {".js", "JavaScript source", "JavaScript", "Program text that runs in browsers."},
    {".json", "JSON data", "JSON", "Data as text, written as in JavaScript."},
    {".log", "Log", "Log", "What a program did, line by line."},
    {".m4a", "MPEG-4 sound", "MPEG-4", "Sound, packed with a loss that hardly shows."},
    {".md", "Markdown text", "Markdown", "Plain text whose marks make headings, lists and links."},
    {".mov", "QuickTime film", "QuickTime", "Moving pictures with sound, as cameras make them."},
    {".mp3", "MP3 sound", "MP3", "Sound, packed with a loss that hardly shows."},
    {".mp4", "MPEG-4 film", "MPEG-4", "Moving pictures with sound."},
    {".odt", "OpenDocument text", "OpenDocument", "A text document in a form that is an open standard."},
    {".ogg", "Ogg sound", "Ogg", "Sound in a form that is free for all."},
    {".pdf", "PDF document", "PDF", "Pages that look the same everywhere."},
    {".png", "PNG picture", "PNG", "A picture, packed without any loss, perhaps see-through.", kPicture},
    {".ppt", "Slides", "Slides", "A presentation in the older binary form."},
    {".pptx", "Slides", "Slides", "A presentation: XML and pictures in a ZIP archive."},
    {".ps", "PostScript document", "PostScript", "Pages as a program for printers."},
    {".py", "Python source", "Python", "Program text in the language Python."},
    {".rc", "Windows resources", "resources", "Texts, icons and dialogs of a Windows program."},
    {".rtf", "Rich text", "Rich text", "A text document that most word processors read."},
    {".sh", "Shell script", "Shell", "Commands of a Unix shell, one after the other."},
    {".so", "Unix library", "library", "Program code that several programs share."},
    {".sql", "SQL script", "SQL", "Questions and orders to a database."},
    {".svg", "SVG picture", "SVG", "A picture as a drawing in XML, sharp at any size.", kPicture},
    {".tar", "tar archive", "tar", "Many files in one, not packed."},
    {".tif", "TIFF picture", "TIFF", "A picture as scanners and printers like it, exact and large."},
    {".tiff", "TIFF picture", "TIFF", "A picture as scanners and printers like it, exact and large."},
    {".ttf", "Font", "Font", "The shapes of a typeface's letters."},
    {".txt", "Text", "Text", "Plain text without any form."},
    {".wav", "Wave sound", "Wave", "Sound as it was recorded, not packed."},
    {".webm", "WebM film", "WebM", "Moving pictures with sound, in a form that is free for all."},
    {".webp", "WebP picture", "WebP", "A picture, packed with or without a loss: small.", kPicture},
    {".woff2", "Web font", "Web font", "The shapes of a typeface's letters, packed for web pages."},
    {".xls", "Spreadsheet", "Spreadsheet", "Tables that calculate, in the older binary form."},
    {".xlsx", "Spreadsheet", "Spreadsheet", "Tables that calculate: XML in a ZIP archive."},
    {".xml", "XML data", "XML", "Data as text, between named tags."},
    {".yml", "YAML data", "YAML", "Data as text, its structure shown by indents."},
    {".zip", "ZIP archive", "ZIP", "Many files in one, packed."},
};

constexpr std::size_t kLongest = 6;

static_assert(std::ranges::is_sorted(kKinds, {}, &FileKind::extension));

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

}  // namespace

const FileKind kLinkToFile = {"", "Link", "Link", "Another name for a file elsewhere."};
const FileKind kLinkToFolder = {"", "Link to a folder", "Link", "Another name for a folder elsewhere."};
const FileKind kBrokenLink = {"", "Broken link", "Broken link", "A name for something that does not exist."};

const FileKind& KindOf(std::string_view fileName) {
    const std::size_t point = fileName.rfind('.');
    if (point == fileName.npos || fileName.size() - point > kLongest) return kUnknown;
    std::string extension(fileName.substr(point));
    std::ranges::transform(extension, extension.begin(), Lower);
    const auto* const kind = std::ranges::lower_bound(kKinds, extension, {}, &FileKind::extension);
    return kind != std::end(kKinds) && kind->extension == extension ? *kind : kUnknown;
}

}  // namespace qv::tool
