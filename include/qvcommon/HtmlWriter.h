#pragma once

/// @file The page builder through which every HTML page of the library is written, and the text operations beside it.

#include "qvcommon/HtmlDocument.h"
#include "qvcommon/framework/Collections.h"
#include "qvcommon/framework/StdioFile.h"

/// A streaming builder: each call appends a finished piece of markup, in call order, to a text in memory or, once a file
/// name is set, to that file. It keeps no tree, checks no nesting, tag name or attribute, and adds no line break of its
/// own: the caller opens and closes in the right order. Only what a member says it escapes is escaped.
///
/// Text arguments are bytes in the process's code page and must not be null where they are a view; a `const char*` may be
/// null where its default is. Any operation that writes raises CFileException* when the file cannot be opened or written;
/// the text of that call is lost then. One object, one thread; the static members may run on any.
class QVCOMMON_API CHtmlWriter : public CObject {
    DECLARE_DYNAMIC(CHtmlWriter)

public:
    /// Any other value is accepted and means what each operation says of it.
    enum enumAlign : int { alignNone, alignLeft, alignCenter, alignRight };

    CHtmlWriter() = default;
    /// Copies take over the accumulated text and nothing else: no file name, no open file, no dropdowns. Assigning closes
    /// the file that this writer had open; a failure of that close is not reported.
    CHtmlWriter(const CHtmlWriter& other);
    CHtmlWriter& operator=(const CHtmlWriter& other);
    /// Closes the file if it is still open; a failure is not reported: call CommitFile to learn of it.
    ~CHtmlWriter() override = default;

    /// A writer in memory with this text and the other's after it.
    CHtmlWriter operator+(const CHtmlWriter& other) const;
    /// Appends the other's accumulated text, to this writer's file if it has one.
    CHtmlWriter& operator+=(const CHtmlWriter& other);

    // The head. These four are the operations that derived classes change.

    /// "<head>", AddTitleToHead with the same arguments, "</head>". "<html>" and "<body>" are left to the caller.
    virtual void AddTitle(const char* title, const char* stylesheet = nullptr, const char* headTag = nullptr,
                          const char* dropdownImageDir = nullptr);
    /// The escaped title in "<Title>"; then, for each argument that is not null: a link to the style sheet, its backslashes
    /// turned into slashes; `headTag` as a bare tag; the script of the drop-down sections with their pictures' folder.
    virtual void AddTitleToHead(const char* title, const char* stylesheet = nullptr, const char* headTag = nullptr,
                                const char* dropdownImageDir = nullptr);
    /// "<A href=...>"; the address is not escaped.
    virtual void OpenHotlink(const char* url);
    /// The end of the link.
    virtual void CloseHotlink();

    // Output (html/HtmlWriter.cpp)

    /// Appends the text exactly as it is. Every other operation ends here.
    ///
    /// In memory the text's capacity is raised by at least 1000000 bytes whenever it is above 10000 and fewer than 1000 are
    /// free. With a file name the file is opened at the first write, and nothing is kept in memory.
    void AddFormattedText(std::string_view text) {
        std::string& html = m_strHtml.AsStd();
        if (m_strFilename.IsEmpty() && html.capacity() >= html.size() + kHeadRoom)
            html += text;
        else
            AppendElsewhere(text);
    }
    /// Appends Clean(text).
    void AddText(std::string_view text);
    /// "<tag>", or "<tag attributes>" when there are attributes.
    void AddTag(const char* tag, const char* attributes = nullptr);
    /// The same, for a tag that CloseTag ends.
    void OpenTag(const char* tag, const char* attributes = nullptr) { AddTag(tag, attributes); }
    /// "</tag>".
    void CloseTag(const char* tag);

    /// Each: The text in memory. None of these four looks at the file. References are valid until the writer changes.
    const CString& GetHtml() const { return m_strHtml; }
    operator const char*() const { return m_strHtml; }
    bool IsEmpty() const { return m_strHtml.IsEmpty(); }
    void Empty() { m_strHtml.Empty(); }

    /// From now on text goes to this file; what is in memory stays there. The name takes effect when the file is opened.
    void SetFilename(const char* name) { m_strFilename = name; }
    CString GetFilename() const { return m_strFilename; }
    /// Closes the file. A write after it empties the file and starts anew. @throws CFileException* when the system could
    /// not keep what was written; the file is closed then too.
    void CommitFile() { CloseFile(); }

    // Elements (html/HtmlWriterElements.cpp)

    /// "hN" around the escaped text. An alignment outside the four values writes no opening tag.
    void AddHeading(int level, std::string_view text, enumAlign align = alignNone);
    void AddHeading(int level, std::string_view text, const char* attributes);
    /// "P" around the escaped text; the alignment follows the caller's attributes.
    void AddParagraph(std::string_view text, enumAlign align = alignNone, const char* attributes = nullptr);
    /// "<P>&nbsp;</P>".
    void AddBlankParagraph();
    /// "pre" around the escaped text, whose line ends thus become "<br>".
    void AddPreformattedParagraph(std::string_view text, const char* attributes = nullptr);
    /// "code" around the escaped text, with four non-breaking spaces for each tab.
    void AddCode(std::string_view text);
    /// Each: a list with numbers, or with bullets, begins or ends; AddLine writes what is between.
    void OpenNumberList(const char* attributes = nullptr) { OpenTag("ol", attributes); }
    void CloseNumberList() { CloseTag("ol"); }
    void OpenBulletList(const char* attributes = nullptr) { OpenTag("ul", attributes); }
    void CloseBulletList() { CloseTag("ul"); }
    /// "li" around the text, which is NOT escaped.
    void AddLine(std::string_view text, const char* attributes = nullptr);

    /// An "img". The source and `extra` are not escaped, the alternative text is (CleanFloatOver); width and height, in
    /// pixels, are written only when neither is 0. Parts that are empty leave their separating blanks.
    void AddImage(const char* source, enumAlign align = alignNone, const char* altText = nullptr, int width = 0,
                  int height = 0, const char* extra = nullptr);
    /// The same, under the name that older callers use.
    void AddUppercaseImage(const char* source, enumAlign align = alignNone, const char* altText = nullptr,
                           int width = 0, int height = 0, const char* extra = nullptr) {
        AddImage(source, align, altText, width, height, extra);
    }

    /// A link to a named place, in this page or another one. Neither text is escaped.
    void OpenBookmark(const char* name, const char* page = nullptr);
    /// The end of the link.
    void CloseBookmark();
    /// An empty anchor of that name.
    void AddBookmark(const char* name);
    /// The name as it stands in the page: the one place where names of anchors would be normalised. It changes nothing.
    static CString CleanBookmark(const char* name) { return name; }

    // Forms (html/HtmlWriterForms.cpp). No text is escaped.

    /// A form that posts to `action`, with `command` in the hidden field "MfcISAPICommand".
    void OpenForm(const char* action, const char* command);
    /// The end of the form.
    void CloseForm() { CloseTag("form"); }
    /// A field that the reader does not see.
    void AddHiddenField(const char* name, const char* value);
    void AddHiddenField(const char* name, int value);
    /// A field `size` characters wide, empty when `value` is null.
    void AddSingleLineTextField(const char* name, int size, const char* value = nullptr);
    void AddSingleLineTextField(const char* name, int size, int value);

    // Drop-down sections (html/HtmlWriterDropdowns.cpp)
    //
    // A section is a hot spot with the title, and a body that is closed when the page loads; a click on the hot spot opens
    // and closes it. Which are open is kept in a cookie that is named by the page's path and lasts until the browser is
    // closed, by their places in the page. A page with navigation bars that roll up has no room for sections: both use
    // the same cookie and the same functions.
    //
    // The scripts of this and the next two groups speak the object model of old browsers. AddBrowserSupport makes them
    // work in those of today.

    /// Whether AddDropdownTitle, StartDropdownText and EndDropdownText write sections, and the folder that holds "open.gif"
    /// and "closed.gif", which gets a final "\" where it lacks it. (Browsers read "\" in addresses as "/".)
    void SetDropdowns(int enabled, const char* imageDirectory);
    int GetDropdowns() const { return m_bDropdowns; }

    /// With dropdowns on: a section and its hot spot with picture and escaped text, the section left open. Off: a heading.
    void AddDropdownTitle(int level, std::string_view text);
    /// Each: With dropdowns on: the section's body, and the end of body and section. Off: nothing.
    void StartDropdownText();
    void EndDropdownText();

    /// Each: The tags that the three above are made of, whether dropdowns are on or off.
    void OpenDropdownSection();
    void OpenDropdownHotspot();
    void OpenDropdownText();
    void AddDropdownImage(const char* directory);
    void CloseDropdownSection() { CloseTag("div"); }
    void CloseDropdownHotspot() { CloseTag("div"); }
    void CloseDropdownText() { CloseTag("div"); }

    /// The script of the sections and of the cookie; once a page, in its head. A quote in the folder would end the script's
    /// string: it must hold none.
    void AddDropdownScript(const char* imageDirectory);
    /// Restores what the cookie says, and saves it when the page is left; once a page, after its last section.
    void AddDropdownCookie();

    // Glossary popups (html/HtmlWriterGlossary.cpp)

    /// The box and its functions; once a page, in its body before the first term.
    void AddPopupScript();
    /// The attributes that show the message while the pointer is over their element. The message has to be a text that
    /// CleanScriptParameter(text, 0) gave, tags around it included. The ";" between the two attributes belongs to them.
    static CString GetPopupCalls(std::string_view message);
    /// Clean(text), with every term in it in a span that pops up its explanation. Terms are found as whole words without
    /// regard to case; a plural "s" or "es" behind a term stays outside the span. A hit is left out when it starts in, or
    /// right behind, one of a term further ahead in the array, or an earlier one of the same term. (One that starts before
    /// such a hit and reaches into it is kept: the text that both cover then stands in both spans.) An empty term is found
    /// nowhere. Time grows in line with the text, the terms and the result.
    /// @throws CInvalidArgException* when there are fewer explanations than terms.
    static CString GetGlossarizedText(std::string_view text, const CStringArray& terms,
                                      const CStringArray& explanations);
    /// "P" around GetGlossarizedText.
    void AddGlossarizedParagraph(std::string_view text, const CStringArray& terms, const CStringArray& explanations);

    // The quick menu, a column that stays beside the page while it scrolls (html/HtmlWriterQuickMenu.cpp)

    /// The function scrollMenu, which the page has to call when it scrolls; AddBrowserSupport calls it too.
    void AddQuickMenuScript();
    /// Each: In this order: the menu with its escaped title, its links (escaped texts), the page's content, the end of
    /// that.
    void OpenQuickMenu(std::string_view title);
    void AddQuickMenuLink(const char* url, std::string_view text);
    void StartQuickMenuPage();
    void CloseQuickMenu();

    // Browsers of today (html/HtmlWriterSupport.cpp)

    /// Writes a script that gives a browser of today what the scripts of sections, popups, quick menu and navigation bars
    /// expect of an old one; in an old one it does nothing. Once a page, in its head, best from an override of
    /// AddTitleToHead; nothing else of the page changes. With it
    /// - sections and bars open, close and remember, also a single one, and a page from a disk that gets no cookies
    ///   remembers for as long as its window lives;
    /// - popups appear beside the pointer, or beside a term that has the focus, within the window, and go with Escape;
    /// - the quick menu follows the scroll, whether or not the page calls scrollMenu;
    /// - what opens and closes takes the focus, Enter and Space, and reports its state (aria-expanded); the current choice
    ///   of a bar is marked (aria-current);
    /// - a link into a closed section opens it.
    ///
    /// To other scripts of the page the browser then looks like an old one too: document.all counts as true, elements have
    /// "all", styles "pixelTop", and the browser's application name is empty.
    void AddBrowserSupport();

    // Other pages (html/HtmlWriterInclude.cpp)

    /// Appends the body of a page, or the whole file when it has no "<body" or "<BODY" tag; lines end in a line feed then.
    /// The file is opened so that nobody writes to it meanwhile.
    /// @return 1, or 0 after appending nothing when the file cannot be opened or read; no error is raised for that.
    int AddHtmlFile(const char* path);
    /// The words of another page's body: every tag becomes a blank, the rest goes through Dirty. Empty when the file cannot
    /// be read.
    static CString GetFileBodyWords(const char* path);

    // Plain text (html/HtmlPlainText.cpp)

    /// The text of a page as a mail or a note shows it: "p" and "br" start a line, "li" a line with "* ", other tags and
    /// line ends become a blank, blanks are joined, the five entities that Clean makes are turned back, and lines end in
    /// CR LF. Closing tags are other tags. Time and memory grow in line with the text.
    static CString HtmlToPlainText(std::string_view html);

    // Escaping (html/HtmlEscape.cpp)
    //
    // The non-breaking space is byte 0xA0 in a single-byte code page; in a multibyte one it is the character U+00A0 and the
    // byte 0xA0 where that is no part of a well-formed character.

    /// For text between tags: & < > " and the non-breaking space become entities, a carriage return becomes "<br>", line
    /// feeds are dropped. Clean("a<b\r\n") gives "a&lt;b<br>".
    static CString Clean(std::string_view text);
    /// For attribute values: the same entities; line ends stay.
    static CString CleanFloatOver(std::string_view text);
    /// For script strings in single quotes within an attribute. Always: \ and ' get a backslash, " becomes "&quot;", line
    /// feeds are dropped. With `inAttributeOnly` 0 the string becomes HTML once more when the script runs, so entities are
    /// escaped twice ("<" becomes "&amp;lt;") and a carriage return becomes "<br>".
    static CString CleanScriptParameter(std::string_view text, int inAttributeOnly = 0);
    /// Undoes Clean. What Clean dropped or could not tell apart stays lost: line feeds, and in a multibyte code page the
    /// single byte 0xA0, which comes back as the character.
    static CString Dirty(std::string_view text);

    // For pages in UTF-8, whatever the process's code page is. Only ASCII characters are looked at: the non-breaking
    // space stays a character, and bytes that are not UTF-8 stay as they are (browsers show U+FFFD for them).

    /// For text between tags, otherwise as Clean.
    static CString CleanUtf8(std::string_view text);
    /// For attribute values, otherwise as CleanFloatOver.
    static CString CleanFloatOverUtf8(std::string_view text);
    /// For script strings, in single or double quotes, in a script element or in an attribute of either quotes: nothing
    /// in the result means anything to the script or to the page around it. Letters, digits and " -._" stay, every
    /// other ASCII character becomes "\x" and two hexadecimal digits, and U+2028 and U+2029, which end a script's line,
    /// "\u2028" and "\u2029". CleanScriptUtf8("it's") gives "it\x27s".
    static CString CleanScriptUtf8(std::string_view text);

    // Moving a page (html/HtmlRebase.cpp)

    /// Finds the addresses of a page. Any text is accepted; time and memory grow in line with it.
    static CHtmlDocument LoadDocument(std::string_view html);
    /// Joins one address of an element to `newBase` if it is relative; the joining rule stands with RebaseAddress in
    /// HtmlDocument.h. An address that was joined before is taken as it stands in the page, not joined twice.
    /// @param element  0 to document.GetElementCount() - 1.
    /// @param attribute  its name in lower case.
    /// @return whether the address was joined: false without such an attribute and for addresses that stay as they are.
    static bool RebaseElement(CHtmlDocument& document, int element, std::string_view attribute,
                              std::string_view newBase);
    /// The same for every element with the tag name, or for all elements when that is empty. Returns how many were joined.
    static int RebaseCollection(CHtmlDocument& document, std::string_view tag, std::string_view attribute,
                                std::string_view newBase);
    /// The page's body with every relative address joined to `newBase`, all other bytes as they were.
    static CString GetRebasedBody(std::string_view html, std::string_view newBase);

protected:
    /// Opens the file when it is not open, creating or emptying it. Others may read the file meanwhile but not write it.
    /// Waits and tries again while another process holds it. @throws CFileException*
    void OpenFile();
    /// Closes the file when it is open. @throws CFileException* when the system could not keep what was written.
    void CloseFile();

    /// 1 if the part of the text, `length` bytes from `start`, stands by itself as a glossary's terms have to. It has to
    /// begin and end between characters of the text.
    static int IsWholeWord(std::string_view text, int start, int length);

private:
    static constexpr std::size_t kHeadRoom = 1000;

    /// To the file, or to a text that may have to grow by the rule.
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
