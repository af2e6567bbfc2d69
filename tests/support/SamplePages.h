#pragma once

#include <span>

#include "qvcommon/HtmlWriter.h"

/// A page of one family of interactive elements, as applications write them.
class SamplePage : public CHtmlWriter {
public:
    /// @param support  whether the page carries what browsers of today need.
    explicit SamplePage(bool support) : m_support(support) {}
    void AddTitleToHead(const char* title, const char* stylesheet, const char* headTag,
                        const char* dropdownImageDir) override;

private:
    bool m_support;
};

struct Sample {
    void Write(CHtmlWriter& page) const;

    const char* name;
    void (*write)(CHtmlWriter& page);  ///< the body; the whole page where `title` is null
    const char *title = nullptr, *bodyAttributes = nullptr, *imageDirectory = nullptr;
};

std::span<const Sample> SamplePages();
