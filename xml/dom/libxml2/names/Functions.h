#pragma once

/// @file The functions of XPath that look at names and prefixes, over names that are whole.

#include <libxml/xpathInternals.h>

#include <memory>

#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {

struct FreeXPathObject {
    void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};
using XPathObject = std::unique_ptr<xmlXPathObject, FreeXPathObject>;

/// Those that libxml2's own would get wrong; null for others.
xmlXPathFunction FindFunction(void*, const xmlChar* name, const xmlChar* ns);

}  // namespace qv::dom
