#pragma once

/// @file Entries of XML sections in several versions (XmlObject.h has the objects, XmlSection.h the text).
///
/// The section of an object is named by its type and version: "Circle" for version 1, "Circle.2" for version 2. A program
/// reads the versions that it knows, each with a class of its own choice, and keeps all others as they are, so that a file
/// of a later program, or of one with other plug-ins, loses nothing when it is saved again:
///
///     CXmlEntryTemplate circles("Circle");
///     circles.AddVersion<OldCircle>(1).AddVersion<Circle>(2);  // Circle::GetType() returns CXmlEntryTemplate::GetTag("Circle", 2)
///     section.GetEntryArray("Shapes", shapes);
///     other.AddObjectArray("Shapes", shapes);

#include "qvcommon/XmlObject.h"
#include "qvcommon/XmlSection.h"

/// The versions of one type that the program knows: CXmlObjectFactory makes their objects for as long as it lives. A later
/// template for the same type and version replaces an earlier one. Any thread may make objects; one at a time uses a template.
class QVCOMMON_API CXmlEntryTemplate {
public:
    /// @throws CInvalidArgException* for a type that is empty, begins with "/", holds "<" or ">", or ends like a version
    /// (a point and digits).
    explicit CXmlEntryTemplate(std::string_view type);
    /// The factory no longer knows these versions.
    ~CXmlEntryTemplate();
    CXmlEntryTemplate(const CXmlEntryTemplate&) = delete;
    CXmlEntryTemplate& operator=(const CXmlEntryTemplate&) = delete;

    /// The class, derived from CXmlObject, with a default constructor, for the entries of a version. The same class may
    /// serve several versions. @throws CInvalidArgException* for a version below 1.
    template <class T>
    CXmlEntryTemplate& AddVersion(int version) {
        const CString tag = GetTag(m_type, version);
        CXmlObjectFactory::Register<T>(tag);
        m_tags.Add(tag);
        return *this;
    }
    /// The type that the constructor got.
    const CString& GetType() const { return m_type; }

    /// The tag of a version: what CXmlObject::GetType of its class returns. @throws CInvalidArgException* for a version
    /// below 1.
    static CString GetTag(std::string_view type, int version);
    /// The way back; version 1 for a tag without one, or with an invalid one (0, leading zeros, beyond 31 bits), which
    /// then is a part of the type.
    static int SplitTag(std::string_view tag, CString& type);

private:
    CString m_type;
    CStringArray m_tags;
};

/// An entry that the factory knows no class for. Saved again it is the same text, byte for byte, but for blanks in its own
/// tag, which become "_".
class QVCOMMON_API CXmlUnknownEntry : public CXmlObject {
    DECLARE_DYNAMIC(CXmlUnknownEntry)

public:
    CXmlUnknownEntry() = default;
    ~CXmlUnknownEntry() override;

    /// The section's tag, with the version.
    CString GetType() const override { return m_section.GetTagName(); }
    /// Replaces the section by the one that was loaded.
    void SaveXml(CXmlSection& section) const override { section = m_section; }
    void LoadXml(const CXmlSection& section) override { m_section = section; }
    /// What was loaded.
    const CXmlSection& GetSection() const { return m_section; }

private:
    CXmlSection m_section;
};
