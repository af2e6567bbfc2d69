#pragma once

/// @file Versioned entries of XML sections (XmlObject.h describes the objects, XmlSection.h the text).
///
/// The section of an object is named after its type and version: "Circle" for version 1, "Circle.2" for version 2. A
/// program reads the versions that it supports, each with a class of its own choice, and keeps all others unchanged, so
/// that a file written by a later program, or by one with other plug-ins, is saved again without loss:
///
///     CXmlEntryTemplate circles("Circle");
///     circles.AddVersion<OldCircle>(1).AddVersion<Circle>(2);  // Circle::GetType() returns CXmlEntryTemplate::GetTag("Circle", 2)
///     section.GetEntryArray("Shapes", shapes);
///     other.AddObjectArray("Shapes", shapes);

#include "qvcommon/XmlObject.h"
#include "qvcommon/XmlSection.h"

/// The versions of one type that the program supports: CXmlObjectFactory creates their objects as long as the template
/// exists. A later template for the same type and version replaces an earlier one. Objects may be created by any
/// thread; a template is not thread-safe.
class QVCOMMON_API CXmlEntryTemplate {
public:
    /// @throws CInvalidArgException* for a type that is empty, begins with "/", contains "<" or ">", or ends like a
    /// version (a dot and digits).
    explicit CXmlEntryTemplate(std::string_view type);
    /// Unregisters these versions, except those that a later template has replaced.
    ~CXmlEntryTemplate();
    CXmlEntryTemplate(const CXmlEntryTemplate&) = delete;
    CXmlEntryTemplate& operator=(const CXmlEntryTemplate&) = delete;

    /// Registers the class, derived from CXmlObject, with a default constructor, for the entries of a version. The same
    /// class may be used for several versions. @throws CInvalidArgException* for a version below 1.
    template <class T>
    CXmlEntryTemplate& AddVersion(int version) {
        const CString tag = GetTag(m_type, version);
        m_versions.emplace_back(tag, CXmlObjectFactory::Register<T>(tag));
        return *this;
    }
    /// Returns the constructor's type.
    const CString& GetType() const { return m_type; }

    /// Returns the tag of a version: what CXmlObject::GetType of its class returns. @throws CInvalidArgException* for a
    /// version below 1.
    static CString GetTag(std::string_view type, int version);
    /// The inverse; version 1 for a tag without one, or with an invalid one (0, leading zeros, beyond 31 bits), which
    /// is then part of the type.
    static int SplitTag(std::string_view tag, CString& type);

private:
    CString m_type;
    std::vector<std::pair<CString, CQVClassFactory::Registration>> m_versions;  // their tags
};

/// An entry whose class is not registered with the factory. It is saved again byte for byte, except for blanks in its
/// own tag, which become "_".
class QVCOMMON_API CXmlUnknownEntry : public CXmlObject {
    DECLARE_DYNAMIC(CXmlUnknownEntry)

public:
    CXmlUnknownEntry() = default;
    ~CXmlUnknownEntry() override;

    /// Returns the section's tag, with the version.
    CString GetType() const override { return m_section.GetTagName(); }
    /// Replaces the section by the loaded one.
    void SaveXml(CXmlSection& section) const override { section = m_section; }
    void LoadXml(const CXmlSection& section) override { m_section = section; }
    /// Returns the loaded section.
    const CXmlSection& GetSection() const { return m_section; }

private:
    CXmlSection m_section;
};
