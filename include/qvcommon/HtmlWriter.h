#pragma once

/// @file The builder that writes every HTML page of the library, and related text operations.

#include "qvcommon/HtmlDocument.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/StdioFile.h"

/// A streaming builder: each call appends finished markup, in call order, to a string in memory or, once a file name is
/// set, to that file. It keeps no tree, does not validate nesting, tag names or attributes, and adds no line breaks:
/// the caller must open and close tags in the right order. Strings are escaped only where a member says so.
///
/// String arguments are bytes in the process's code page and must not be null where they are a view; a `const char*`
/// may be null where its default is. Every operation that writes raises CFileException* if the file cannot be opened or
/// written; the text of that call is then lost. Not thread-safe; the static members are.
class QVCOMMON_API CHtmlWriter : public CObject {
    DECLARE_DYNAMIC(CHtmlWriter)

public:
    /// Any other value is accepted; each operation defines its meaning.
    enum enumAlign : int { alignNone, alignLeft, alignCenter, alignRight };

    CHtmlWriter() = default;
    /// Copies contain only the accumulated text: no file name, no open file, no dropdowns. Assigning closes the file
    /// that this writer had open; a failure to close is not reported.
    CHtmlWriter(const CHtmlWriter& other);
    CHtmlWriter& operator=(const CHtmlWriter& other);
    /// Closes the file if it is still open; a failure is not reported: call CommitFile to detect it.
    ~CHtmlWriter() override = default;

    /// Returns a writer in memory with this text followed by the other's.
    CHtmlWriter operator+(const CHtmlWriter& other) const;
    /// Appends the other's accumulated text, to this writer's file if it has one.
    CHtmlWriter& operator+=(const CHtmlWriter& other);

    // The head. Derived classes override these four operations.

    /// Writes "<head>", AddTitleToHead with the same arguments, "</head>". The caller writes "<html>" and "<body>".
    virtual void AddTitle(const char* title, const char* stylesheet = nullptr, const char* headTag = nullptr,
                          const char* dropdownImageDir = nullptr);
    /// Writes the escaped title in "<Title>"; then, for each argument that is not null: a link to the style sheet, its
    /// backslashes replaced by slashes; `headTag` as a bare tag; the script of the drop-down sections with the folder
    /// of their pictures.
    virtual void AddTitleToHead(const char* title, const char* stylesheet = nullptr, const char* headTag = nullptr,
                                const char* dropdownImageDir = nullptr);
    /// Writes "<A href=...>"; the address is not escaped.
    virtual void OpenHotlink(const char* url);
    /// Closes the link.
    virtual void CloseHotlink();

    // Output (html/HtmlWriter.cpp)

    /// Appends the text verbatim. All other operations end here.
    ///
    /// In memory the string's capacity is raised by at least 1000000 bytes when it is above 10000 and fewer than 1000
    /// are free. With a file name the file is opened at the first write, and nothing is kept in memory.
    void AddFormattedText(std::string_view text) {
        std::string& html = m_strHtml.AsStd();
        if (m_strFilename.IsEmpty() && html.capacity() >= html.size() + kHeadRoom)
            html += text;
        else
            AppendElsewhere(text);
    }
    /// Appends Clean(text).
    void AddText(std::string_view text);
    /// Writes "<tag>", or "<tag attributes>" if there are attributes.
    void AddTag(const char* tag, const char* attributes = nullptr);
    /// Does the same, for a tag closed by CloseTag.
    void OpenTag(const char* tag, const char* attributes = nullptr) { AddTag(tag, attributes); }
    /// Writes "</tag>".
    void CloseTag(const char* tag);

    /// Each: The text in memory. These four ignore the file. References are valid until the writer changes.
    const CString& GetHtml() const { return m_strHtml; }
    operator const char*() const { return m_strHtml; }
    bool IsEmpty() const { return m_strHtml.IsEmpty(); }
    void Empty() { m_strHtml.Empty(); }

    /// Redirects further text to this file; text in memory remains there. The name takes effect when the file is
    /// opened.
    void SetFilename(const char* name) { m_strFilename = name; }
    CString GetFilename() const { return m_strFilename; }
    /// Closes the file. A later write truncates the file. @throws CFileException* if what was written could not be
    /// stored; the file is closed then too.
    void CommitFile() { CloseFile(); }

    // Elements (html/HtmlWriterElements.cpp)

    /// Writes "hN" around the escaped text. An alignment outside the four values writes no opening tag.
    void AddHeading(int level, std::string_view text, enumAlign align = alignNone);
    void AddHeading(int level, std::string_view text, const char* attributes);
    /// Writes "P" around the escaped text; the alignment follows the caller's attributes.
    void AddParagraph(std::string_view text, enumAlign align = alignNone, const char* attributes = nullptr);
    /// Writes "<P>&nbsp;</P>".
    void AddBlankParagraph();
    /// Writes "pre" around the escaped text; its newlines thus become "<br>".
    void AddPreformattedParagraph(std::string_view text, const char* attributes = nullptr);
    /// Writes "code" around the escaped text, with four non-breaking spaces for each tab.
    void AddCode(std::string_view text);
    /// Each: Opens or closes a numbered or bulleted list; AddLine writes its items.
    void OpenNumberList(const char* attributes = nullptr) { OpenTag("ol", attributes); }
    void CloseNumberList() { CloseTag("ol"); }
    void OpenBulletList(const char* attributes = nullptr) { OpenTag("ul", attributes); }
    void CloseBulletList() { CloseTag("ul"); }
    /// Writes "li" around the text, which is NOT escaped.
    void AddLine(std::string_view text, const char* attributes = nullptr);

    /// Writes an "img". The source and `extra` are not escaped, the alternative text is (CleanFloatOver); width and
    /// height, in pixels, are written only if neither is 0. Empty parts still leave their separating blanks.
    void AddImage(const char* source, enumAlign align = alignNone, const char* altText = nullptr, int width = 0,
                  int height = 0, const char* extra = nullptr);
    /// Does the same, under the name used by older callers.
    void AddUppercaseImage(const char* source, enumAlign align = alignNone, const char* altText = nullptr,
                           int width = 0, int height = 0, const char* extra = nullptr) {
        AddImage(source, align, altText, width, height, extra);
    }

    /// Opens a link to a bookmark, in this page or another one. Neither string is escaped.
    void OpenBookmark(const char* name, const char* page = nullptr);
    /// Closes the link.
    void CloseBookmark();
    /// Writes an empty anchor of that name.
    void AddBookmark(const char* name);
    /// Returns the name as written to the page: the single place where anchor names would be normalized. It changes
    /// nothing.
    static CString CleanBookmark(const char* name) { return name; }

    // Forms (html/HtmlWriterForms.cpp). Nothing is escaped.

    /// Opens a form that posts to `action`, with `command` in the hidden field "MfcISAPICommand".
    void OpenForm(const char* action, const char* command);
    /// Closes the form.
    void CloseForm() { CloseTag("form"); }
    /// Writes a hidden field.
    void AddHiddenField(const char* name, const char* value);
    void AddHiddenField(const char* name, int value);
    /// Writes a text field `size` characters wide, empty if `value` is null.
    void AddSingleLineTextField(const char* name, int size, const char* value = nullptr);
    void AddSingleLineTextField(const char* name, int size, int value);

    // Drop-down sections (html/HtmlWriterDropdowns.cpp)
    //
    // A section is a hot spot with the title, and a body that is closed when the page loads; a click on the hot spot
    // opens and closes it. The open sections, by their position in the page, are stored in a session cookie named after
    // the page's path. A page with collapsible navigation bars cannot contain sections: both use the same cookie and
    // the same functions.
    //
    // The scripts of this and the next two groups use the object model of old browsers. AddBrowserSupport makes them
    // work in current ones.

    /// Sets whether AddDropdownTitle, StartDropdownText and EndDropdownText write sections, and the folder of
    /// "open.gif" and "closed.gif"; a missing trailing "\" is added. (Browsers read "\" in addresses as "/".)
    void SetDropdowns(int enabled, const char* imageDirectory);
    int GetDropdowns() const { return m_bDropdowns; }

    /// With dropdowns on: opens a section and writes its hot spot with picture and escaped text. Off: writes a heading.
    void AddDropdownTitle(int level, std::string_view text);
    /// Each: With dropdowns on: opens the section's body; closes body and section. Off: no-op.
    void StartDropdownText();
    void EndDropdownText();

    /// Each: Writes the tags used by the three above, regardless of whether dropdowns are on.
    void OpenDropdownSection();
    void OpenDropdownHotspot();
    void OpenDropdownText();
    void AddDropdownImage(const char* directory);
    void CloseDropdownSection() { CloseTag("div"); }
    void CloseDropdownHotspot() { CloseTag("div"); }
    void CloseDropdownText() { CloseTag("div"); }

    /// Writes the script of the sections and of the cookie; once per page, in its head. The folder must not contain a
    /// quote, which would end the script's string.
    void AddDropdownScript(const char* imageDirectory);
    /// Restores the state from the cookie, and saves it when the page is left; once per page, after its last section.
    void AddDropdownCookie();

    // Glossary popups (html/HtmlWriterGlossary.cpp)

    /// Writes the box and its functions; once per page, in its body before the first term.
    void AddPopupScript();
    /// Returns the attributes that show the message while the pointer is over their element. The message must be the
    /// result of CleanScriptParameter(text, 0), including tags around it. The ";" between the two attributes is part of
    /// them.
    static CString GetPopupCalls(std::string_view message);
    /// Returns Clean(text), with every term in it in a span that pops up its explanation. Terms match whole words,
    /// ignoring case; a plural "s" or "es" after a term stays outside the span. A match is dropped if it starts in, or
    /// right after, a match of an earlier term of the array, or an earlier match of the same term. (A match that starts
    /// before such a match and overlaps it is kept, and the text continues after the later match: with the terms "cat"
    /// and "the cat sat", the text "the cat sat" shows "the cat sat", "cat", " sat".) An empty term never matches.
    /// Memory is O(n) in the sizes of the text, the terms and the result; time is O(n log n) in these and in the number
    /// of all occurrences of terms, including dropped ones.
    /// @throws CInvalidArgException* if there are fewer explanations than terms.
    static CString GetGlossarizedText(std::string_view text, const CStringArray& terms,
                                      const CStringArray& explanations);
    /// Writes "P" around GetGlossarizedText.
    void AddGlossarizedParagraph(std::string_view text, const CStringArray& terms, const CStringArray& explanations);

    // The quick menu, a column that stays beside the page while it scrolls (html/HtmlWriterQuickMenu.cpp)

    /// Writes the function scrollMenu, which the page must call when it scrolls; AddBrowserSupport calls it too.
    void AddQuickMenuScript();
    /// Each: In this order: opens the menu with its escaped title, adds its links (escaped texts), starts the page's
    /// content, closes it.
    void OpenQuickMenu(std::string_view title);
    void AddQuickMenuLink(const char* url, std::string_view text);
    void StartQuickMenuPage();
    void CloseQuickMenu();

    // Current browsers (html/HtmlWriterSupport.cpp)

    /// Writes a script that provides in a current browser what the scripts of sections, popups, quick menu and
    /// navigation bars expect of an old one; in an old one it does nothing. Once per page, in its head, best from an
    /// override of AddTitleToHead; the rest of the page is unchanged. With it
    /// - sections and bars open, close and are restored, also a single one, and a page from a disk without cookies
    ///   remembers them as long as its window exists;
    /// - popups appear beside the pointer, or beside a term that has the focus, within the window, and are closed by
    ///   Escape;
    /// - the quick menu follows the scroll position, whether or not the page calls scrollMenu;
    /// - elements that open and close are focusable, respond to Enter and Space, and report their state
    ///   (aria-expanded); the current choice of a bar is marked (aria-current);
    /// - a link into a closed section opens it.
    ///
    /// To other scripts of the page the browser then looks like an old one too: document.all counts as true, elements
    /// have "all", styles "pixelTop", and the browser's application name is empty.
    void AddBrowserSupport();

    // Other pages (html/HtmlWriterInclude.cpp)

    /// Appends the body of a page, or the whole file if it has no "<body" or "<BODY" tag; lines then end in a line
    /// feed. The file is opened so that it cannot be written meanwhile.
    /// @return 1, or 0 after appending nothing if the file cannot be opened or read; no error is raised for that.
    int AddHtmlFile(const char* path);
    /// Returns the words of another page's body: every tag becomes a blank, the rest is passed to Dirty. Empty if the
    /// file cannot be read.
    static CString GetFileBodyWords(const char* path);

    // Plain text (html/HtmlPlainText.cpp)

    /// Converts a page to plain text, for a mail or a note: "p" and "br" start a line, "li" a line with "* ", other
    /// tags and newlines become a blank, blanks are collapsed, the five entities produced by Clean are decoded, and
    /// lines end in CR LF. Closing tags are other tags; so are "<br/>" and "<p" before a newline, because a name ends
    /// only at a blank or at ">". Time and memory are O(n).
    static CString HtmlToPlainText(std::string_view html);

    // Escaping (html/HtmlEscape.cpp)
    //
    // The non-breaking space is the byte 0xA0, in a multibyte code page only where that is not part of a well-formed
    // character; in UTF-8 also the character U+00A0.

    /// Escapes text between tags: & < > " and the non-breaking space become entities, a carriage return becomes "<br>",
    /// line feeds are dropped. Clean("a<b\r\n") gives "a&lt;b<br>".
    static CString Clean(std::string_view text);
    /// Escapes attribute values: the same entities; newlines are kept.
    static CString CleanFloatOver(std::string_view text);
    /// Escapes script strings in single quotes within an attribute. \ and ' always get a backslash, " becomes "&quot;",
    /// line feeds are dropped. With `inAttributeOnly` 0 the string is parsed as HTML again when the script runs, so
    /// entities are escaped twice ("<" becomes "&amp;lt;") and a carriage return becomes "<br>". In a double-byte code
    /// page, bytes that are not part of a well-formed character and not escaped become "?": a browser could read them
    /// and the backslash after them as one character.
    static CString CleanScriptParameter(std::string_view text, int inAttributeOnly = 0);
    /// Undoes Clean, except for what Clean dropped or merged: line feeds, and in UTF-8 the single byte 0xA0, which is
    /// decoded to the character. "&nbsp;" is kept in a double-byte code page where 0xA0 is a lead byte, such as 936:
    /// the byte would form a character with the next one.
    static CString Dirty(std::string_view text);

    // For pages in UTF-8, regardless of the process's code page. Only ASCII characters are escaped: the non-breaking
    // space is kept, as are bytes that are not UTF-8 (browsers show U+FFFD for them).

    /// Escapes text between tags, otherwise as Clean.
    static CString CleanUtf8(std::string_view text);
    /// Escapes attribute values, otherwise as CleanFloatOver.
    static CString CleanFloatOverUtf8(std::string_view text);
    /// Escapes script strings, in single or double quotes, in a script element or in an attribute with either quotes:
    /// the result contains nothing with a meaning to the script or to the page around it. Letters, digits and " -._"
    /// are kept, every other ASCII character becomes "\x" and two hexadecimal digits, and U+2028 and U+2029, which end
    /// a line in scripts, "\u2028" and "\u2029". CleanScriptUtf8("it's") gives "it\x27s".
    static CString CleanScriptUtf8(std::string_view text);

    // Moving a page (html/HtmlRebase.cpp)

    /// Finds the addresses of a page. Accepts any text; time and memory are O(n).
    static CHtmlDocument LoadDocument(std::string_view html);
    /// Joins one address of an element to `newBase` if it is relative; RebaseAddress in HtmlDocument.h describes the
    /// rules. An address that was joined before is used verbatim, not joined twice.
    /// @param element  0 to document.GetElementCount() - 1.
    /// @param attribute  its name in lower case.
    /// @return whether the address was joined: false without such an attribute and for addresses that are not changed.
    static bool RebaseElement(CHtmlDocument& document, int element, std::string_view attribute,
                              std::string_view newBase);
    /// Does the same for every element with the tag name, or for all elements if that is empty. Returns the number
    /// joined.
    static int RebaseCollection(CHtmlDocument& document, std::string_view tag, std::string_view attribute,
                                std::string_view newBase);
    /// Returns the page's body with every relative address joined to `newBase`, all other bytes unchanged.
    static CString GetRebasedBody(std::string_view html, std::string_view newBase);

protected:
    /// Opens the file if it is not open, creating or truncating it. Others may read the file meanwhile but not write
    /// it. Waits and retries while another process has it open. @throws CFileException*
    void OpenFile();
    /// Closes the file if it is open. @throws CFileException* if what was written could not be stored.
    void CloseFile();

    /// Returns 1 if the part of the text, `length` bytes from `start`, is a whole word as required of a glossary's
    /// terms. It must begin and end at character boundaries.
    static int IsWholeWord(std::string_view text, int start, int length);

private:
    static constexpr std::size_t kHeadRoom = 1000;

    /// Writes to the file, or to a string that may need to grow.
    void AppendElsewhere(std::string_view text);
    void AppendInMemory(std::string_view text);

    CString m_strHtml;
    CString m_strFilename;
    CStdioFile m_file;
    int m_bFileOpen = 0;
    int m_bMultiUser = 1;
    int m_bDropdowns = 0;
    CString m_strDropdownImageDir;
};
