#include "qvcommon/HtmlDocument.h"

#include <algorithm>

#include "html/HtmlTokenizer.h"
#include "platform/Ascii.h"

namespace {

using qv::html::HtmlTokenizer;
using qv::html::IsName;

constexpr std::string_view kAddressAttributes[] = {"href",     "src",    "background", "action", "formaction",
                                                   "longdesc", "usemap", "cite",       "data",   "poster"};

// Returns the attribute's name from the list; empty if it holds no address.
std::string_view AddressAttribute(std::string_view tag, std::string_view attribute) {
    for (const std::string_view name : kAddressAttributes)
        if (IsName(attribute, name)) return name == "data" && !IsName(tag, "object") ? std::string_view() : name;
    return {};
}

// The first of several attributes with the same name counts.
template <class Address>
void ReadAddresses(HtmlTokenizer& tokenizer, std::string_view tag, std::vector<Address>& addresses) {
    addresses.clear();
    for (HtmlTokenizer::Attribute attribute; tokenizer.NextAttribute(attribute);) {
        const std::string_view name = AddressAttribute(tag, attribute.name);
        const bool repeated = std::any_of(addresses.begin(), addresses.end(),
                                          [&](const Address& address) { return address.attribute == name; });
        if (!name.empty() && !repeated) addresses.push_back({name, attribute.valueBegin, attribute.valueLength});
    }
    std::erase_if(addresses, [](const Address& address) { return address.length == 0; });
}

}  // namespace

CHtmlDocument::CHtmlDocument(std::string_view html) : m_html(html), m_bodyEnd(html.size()) {
    HtmlTokenizer tokenizer(m_html);
    bool hasBody = false;
    std::vector<Address> addresses;
    for (HtmlTokenizer::Tag tag; tokenizer.NextTag(tag);) {
        const bool isBody = IsName(tag.name, "body");
        if (tag.isEnd) {
            if (isBody && hasBody) m_bodyEnd = tag.begin;
            continue;
        }
        ReadAddresses(tokenizer, tag.name, addresses);
        if (!tokenizer.IsComplete()) break;
        if (isBody && !hasBody) {
            hasBody = true;
            m_bodyBegin = tokenizer.EndOfTag();
        }
        AddElement(tag.name, addresses);
    }
}

void CHtmlDocument::AddElement(std::string_view tag, const std::vector<Address>& addresses) {
    if (IsName(tag, "base")) {
        for (const Address& address : addresses)
            if (address.attribute == "href" && !m_base) m_base = m_html.substr(address.begin, address.length);
    } else if (!addresses.empty()) {
        const auto nameBegin = static_cast<std::size_t>(tag.data() - m_html.data());
        m_elements.push_back({nameBegin, tag.size(), m_addresses.size(), addresses.size()});
        m_addresses.insert(m_addresses.end(), addresses.begin(), addresses.end());
    }
}

std::span<const std::string_view> CHtmlDocument::GetAddressAttributes() {
    return kAddressAttributes;
}

const CHtmlDocument::Element& CHtmlDocument::At(int element) const {
    if (element < 0 || element >= GetElementCount()) AfxThrowInvalidArgException();
    return m_elements[static_cast<std::size_t>(element)];
}

CString CHtmlDocument::GetTag(int element) const {
    const Element& found = At(element);
    return qv::ascii::ToLower(std::string_view(m_html).substr(found.nameBegin, found.nameLength));
}

std::optional<std::size_t> CHtmlDocument::FindAddress(int element, std::string_view attribute) const {
    const Element& found = At(element);
    for (std::size_t i = found.firstAddress; i < found.firstAddress + found.addressCount; ++i)
        if (m_addresses[i].attribute == attribute) return i;
    return std::nullopt;
}

CString CHtmlDocument::GetAddress(int element, std::string_view attribute) const {
    const auto address = FindAddress(element, attribute);
    if (!address) return {};
    const auto replaced = m_replaced.find(*address);
    return replaced != m_replaced.end() ? CString(replaced->second) : GetOriginalAddress(element, attribute);
}

CString CHtmlDocument::GetOriginalAddress(int element, std::string_view attribute) const {
    const auto address = FindAddress(element, attribute);
    if (!address) return {};
    return std::string_view(m_html).substr(m_addresses[*address].begin, m_addresses[*address].length);
}

bool CHtmlDocument::SetAddress(int element, std::string_view attribute, std::string_view value) {
    const auto address = FindAddress(element, attribute);
    if (address) m_replaced.insert_or_assign(*address, std::string(value));
    return address.has_value();
}

std::string CHtmlDocument::Assemble(std::size_t begin, std::size_t end) const {
    std::string out;
    for (const auto& [index, value] : m_replaced) {
        const Address& address = m_addresses[index];
        if (address.begin < begin || address.begin >= end) continue;
        out.append(m_html, begin, address.begin - begin).append(value);
        begin = address.begin + address.length;
    }
    return out.append(m_html, begin, end - begin);
}
