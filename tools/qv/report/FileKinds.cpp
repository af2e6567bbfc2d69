#include "tools/qv/report/FileKinds.h"

#include <algorithm>
#include <string>

namespace qv::tool {
namespace {

constexpr bool kPicture = true;

constexpr FileKind kUnknown = {"", "File", "", ""};

// Sorted by extension.
constexpr FileKind kKinds[] = {
    {".7z", "7z archive", "7z", "Many files in one, strongly compressed."},
    {".avif", "AVIF picture", "AVIF", "A picture compressed as a frame of AV1 video; very small.", kPicture},
    {".bmp", "Bitmap picture", "Bitmap", "A picture as uncompressed rows of pixels; large and exact.", kPicture},
    {".c", "C source", "C source", "Program source in C."},
    {".cab", "Cabinet archive", "Cabinet", "Many files in one, compressed; used by Windows installers."},
    {".cmake", "CMake script", "CMake", "The description of a build for CMake."},
    {".cpp", "C++ source", "C++", "Program source in C++."},
    {".css", "Style sheet", "Style sheet", "The appearance of a web page."},
    {".csv", "CSV table", "CSV", "A table as text: one row per line, fields separated by commas."},
    {".db", "Database", "Database", "Records in the private format of a program."},
    {".dll", "Windows library", "library", "Code that several programs share."},
    {".doc", "Word document", "Word document", "A text document in the older binary format."},
    {".docx", "Word document", "Word document", "A text document: XML and pictures in a ZIP archive."},
    {".emf", "Metafile picture", "Metafile", "A picture as a list of drawing operations, sharp at any size."},
    {".exe", "Windows program", "program", "A program that runs on Windows."},
    {".flac", "FLAC sound", "FLAC", "Sound, compressed without loss."},
    {".gif", "GIF picture", "GIF", "A picture of at most 256 colours, possibly animated.", kPicture},
    {".gz", "gzip archive", "gzip", "One file, compressed."},
    {".h", "C or C++ header", "header", "Declarations that several source files share."},
    {".htm", "Web page", "Web page", "Text with links and pictures, for a browser."},
    {".html", "Web page", "Web page", "Text with links and pictures, for a browser."},
    {".ico", "Icon picture", "Icon", "A small picture in several sizes.", kPicture},
    {".ini", "Settings", "Settings", "A program's settings as text, in sections."},
    {".iso", "Disc image", "Disc image", "Everything on a disc, byte for byte."},
    {".jpeg", "JPEG picture", "JPEG", "A photograph, compressed with little visible loss.", kPicture},
    {".jpg", "JPEG picture", "JPEG", "A photograph, compressed with little visible loss.", kPicture},
    {".js", "JavaScript source", "JavaScript", "Program source that runs in browsers."},
    {".json", "JSON data", "JSON", "Data as text, written as in JavaScript."},
    {".log", "Log", "Log", "Messages of a program, one per line."},
    {".m4a", "MPEG-4 sound", "MPEG-4", "Sound, compressed with little audible loss."},
    {".md", "Markdown text", "Markdown", "Plain text with markup for headings, lists and links."},
    {".mov", "QuickTime film", "QuickTime", "Video with sound, as cameras record it."},
    {".mp3", "MP3 sound", "MP3", "Sound, compressed with little audible loss."},
    {".mp4", "MPEG-4 film", "MPEG-4", "Video with sound."},
    {".odt", "OpenDocument text", "OpenDocument", "A text document in an open standard format."},
    {".ogg", "Ogg sound", "Ogg", "Sound in an open format."},
    {".pdf", "PDF document", "PDF", "Pages that look the same everywhere."},
    {".png", "PNG picture", "PNG", "A picture, compressed without loss, possibly transparent.", kPicture},
    {".ppt", "Slides", "Slides", "A presentation in the older binary format."},
    {".pptx", "Slides", "Slides", "A presentation: XML and pictures in a ZIP archive."},
    {".ps", "PostScript document", "PostScript", "Pages as a program for printers."},
    {".py", "Python source", "Python", "Program source in Python."},
    {".rc", "Windows resources", "resources", "Texts, icons and dialogs of a Windows program."},
    {".rtf", "Rich text", "Rich text", "A text document that most word processors open."},
    {".sh", "Shell script", "Shell", "Commands for a Unix shell."},
    {".so", "Unix library", "library", "Code that several programs share."},
    {".sql", "SQL script", "SQL", "Queries and commands for a database."},
    {".svg", "SVG picture", "SVG", "A picture as a drawing in XML, sharp at any size.", kPicture},
    {".tar", "tar archive", "tar", "Many files in one, not compressed."},
    {".tif", "TIFF picture", "TIFF", "A picture as scanners and printers use it; exact and large."},
    {".tiff", "TIFF picture", "TIFF", "A picture as scanners and printers use it; exact and large."},
    {".ttf", "Font", "Font", "The shapes of the letters of a typeface."},
    {".txt", "Text", "Text", "Plain text without formatting."},
    {".wav", "Wave sound", "Wave", "Sound as it was recorded, not compressed."},
    {".webm", "WebM film", "WebM", "Video with sound, in an open format."},
    {".webp", "WebP picture", "WebP", "A picture, compressed with or without loss; small.", kPicture},
    {".woff2", "Web font", "Web font", "The shapes of the letters of a typeface, compressed for web pages."},
    {".xls", "Spreadsheet", "Spreadsheet", "Tables that calculate, in the older binary format."},
    {".xlsx", "Spreadsheet", "Spreadsheet", "Tables that calculate: XML in a ZIP archive."},
    {".xml", "XML data", "XML", "Data as text, between named tags."},
    {".yml", "YAML data", "YAML", "Data as text, structured by indentation."},
    {".zip", "ZIP archive", "ZIP", "Many files in one, compressed."},
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
