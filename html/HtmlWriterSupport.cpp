#include "html/BrowserSupportScript.h"
#include "qvcommon/HtmlWriter.h"

void CHtmlWriter::AddBrowserSupport() {
    AddFormattedText(qv::html::kBrowserSupportScript);
}
