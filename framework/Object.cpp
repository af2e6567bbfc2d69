#include "qvcommon/framework/Object.h"

#include <cstring>
#include <ostream>

namespace {

// A plain pointer, initialized before any constructor runs: class records are registered by constructors of all
// sources.
constinit const CRuntimeClass* g_firstClass = nullptr;

}  // namespace

CRuntimeClass::CRuntimeClass(const char* name, int size, UINT schema, CObject* (*create)(), const CRuntimeClass* base)
    : m_lpszClassName(name),
      m_nObjectSize(size),
      m_wSchema(schema),
      m_pfnCreateObject(create),
      m_pBaseClass(base),
      m_pNextClass(g_firstClass) {
    g_firstClass = this;
}

CRuntimeClass::~CRuntimeClass() {
    const CRuntimeClass** link = &g_firstClass;
    while (*link && *link != this) link = &(*link)->m_pNextClass;
    if (*link) *link = m_pNextClass;
}

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass* base) const {
    for (const CRuntimeClass* type = this; type; type = type->m_pBaseClass)
        if (type == base) return true;
    return false;
}

CObject* CRuntimeClass::CreateObject() const {
    return m_pfnCreateObject ? m_pfnCreateObject() : nullptr;
}

const CRuntimeClass* CRuntimeClass::FromName(const char* name) {
    for (const CRuntimeClass* type = First(); type; type = type->m_pNextClass)
        if (!std::strcmp(type->m_lpszClassName, name)) return type;
    return nullptr;
}

const CRuntimeClass* CRuntimeClass::First() {
    return g_firstClass;
}

CDumpContext& CDumpContext::operator<<(const char* text) {
    m_out << text;
    return *this;
}
CDumpContext& CDumpContext::operator<<(const void* address) {
    m_out << address;
    return *this;
}
CDumpContext& CDumpContext::operator<<(int value) {
    m_out << value;
    return *this;
}

const CRuntimeClass CObject::classCObject("CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr, nullptr);

const CRuntimeClass* CObject::GetRuntimeClass() const {
    return RUNTIME_CLASS(CObject);
}

CObject::~CObject() = default;

void CObject::Serialize(CArchive&) {}

void CObject::AssertValid() const {}

void CObject::Dump(CDumpContext& context) const {
    context << "a " << GetRuntimeClass()->m_lpszClassName << " at " << static_cast<const void*>(this) << "\n";
}
