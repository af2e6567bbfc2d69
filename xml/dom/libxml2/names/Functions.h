#pragma once

/// @file The XPath functions that depend on names and prefixes, for qualified names.

#include <libxml/xpathInternals.h>

#include <memory>

#include "xml/dom/libxml2/names/Scope.h"

namespace qv::dom {

struct FreeXPathObject {
    void operator()(xmlXPathObject* object) const { xmlXPathFreeObject(object); }
};
using XPathObject = std::unique_ptr<xmlXPathObject, FreeXPathObject>;

/// Returns the functions that replace libxml2's own, which expect separate prefixes; null for others.
xmlXPathFunction FindFunction(void*, const xmlChar* name, const xmlChar* ns);

}  // namespace qv::dom
