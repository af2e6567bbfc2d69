#include "html/AddressBase.h"

#include "html/AddressParts.h"
#include "platform/PercentCode.h"
#include "qvcommon/HtmlDocument.h"

namespace qv::html {
namespace {

// Bytes that would end a value or a tag in some form of quoting.
bool BreaksValue(char c) {
    return c == ' ' || ascii::IsControl(c) || std::string_view("\"'<>`").find(c) != std::string_view::npos;
}

// Encodes a folder's name as the path of an address.
std::string EncodeFolder(std::string_view folder) {
    std::string out;
    for (const char c : folder) {
        if (c == '\\')
            out += '/';
        else if (c == '&')
            out += "&amp;";
        else if (BreaksValue(c) || std::string_view("%#?").find(c) != std::string_view::npos)
            AppendPercent(out, c);
        else
            out += c;
    }
    if (!out.ends_with('/')) out += '/';
    return out;
}

bool HasDrive(std::string_view text) {
    return text.size() >= 2 && ascii::IsLetter(text[0]) && text[1] == ':';
}

std::string FolderAddress(std::string_view folder) {
    if (HasDrive(folder)) {
        std::string_view path = folder.substr(2);
        while (!path.empty() && IsSeparator(path[0])) path.remove_prefix(1);
        return "file:///" + std::string(folder.substr(0, 2)) + '/' +
               (path.empty() ? std::string() : EncodeFolder(path));
    }
    return (folder.starts_with("\\\\") ? "file:" : "") + EncodeFolder(folder);
}

std::string EscapeAmpersands(std::string_view text) {
    CString out(text);
    out.Replace("&", "&amp;");
    return out.AsStd();
}

// Returns a value without query and fragment, in which separators, colons and dots are literal.
std::string NormalisePath(std::string_view value) {
    std::string out;
    for (std::size_t i = 0; i < value.size();) {
        const ValueCharacter c = ReadValueCharacter(value, i);
        if (c.code == '?' || c.code == '#') break;
        const bool plain =
            ascii::IsLetterOrDigit(c.code) || std::string_view(":.+").find(c.code) != std::string_view::npos;
        if (IsSeparator(c.code))
            out += '/';
        else if (plain)
            out += c.code;
        else if (BreaksValue(value[i]))
            AppendPercent(out, value[i]);
        else
            out += value.substr(i, c.length);
        i += c.length;
    }
    return out;
}

// Returns the length of scheme, host and the "/" after it, or of a leading "/"; nullopt for a scheme without a host.
std::optional<std::size_t> RootLength(std::string_view base, AddressKind kind) {
    if (kind == AddressKind::Path) return 0;
    if (kind == AddressKind::Rooted) return 1;
    const std::size_t host = kind == AddressKind::Scheme ? base.find(':') + 1 : 0;
    if (!base.substr(host).starts_with("//")) return std::nullopt;
    const std::size_t end = base.find('/', host + 2);
    if (end == base.npos) return std::nullopt;
    const bool drive =
        base.starts_with("file:") && HasDrive(base.substr(end + 1)) && base.substr(end + 3).starts_with('/');
    return end + (drive ? 4 : 1);
}

// Appends one segment to a path that is empty or ends with "/".
void Step(std::string& path, const Segment& segment, bool relative) {
    if (segment.kind == Segment::Name) {
        path += segment.text;
        if (segment.separator) path += '/';
    } else if (segment.kind == Segment::DotDot) {
        const bool climbing = path == "../" || path.ends_with("/../");
        if (path.empty() || climbing) {
            if (relative) path += "../";
        } else {
            path.pop_back();
            path.resize(path.rfind('/') + 1);
        }
    }
}

}  // namespace

AddressBase AddressBase::FromCaller(std::string_view base) {
    const AddressKind kind = Classify(base);
    const bool isAddress = (kind == AddressKind::Scheme && !HasDrive(base)) || base.starts_with("//");
    if (!isAddress) return AddressBase(base.empty() ? std::string() : FolderAddress(base), true);
    return AddressBase(NormalisePath(Trim(EscapeAmpersands(base)).address), false);
}

AddressBase::AddressBase(std::string value, bool isFolder) : m_isFolder(isFolder) {
    const AddressKind kind = Classify(value);
    if (kind == AddressKind::Host && value.find('/', 2) == value.npos) value += '/';
    if (kind == AddressKind::Scheme && value.find('/', value.find(':') + 3) == value.npos) value += '/';
    const auto root = kind == AddressKind::Empty ? std::nullopt : RootLength(value, kind);
    if (!root) return;
    m_usable = true;
    m_root = value.substr(0, *root);
    const std::size_t name = value.rfind('/') + 1;
    m_name = value.substr(std::max(name, *root));
    m_folder = JoinPath({}, std::string_view(value).substr(*root, std::max(name, *root) - *root));
}

AddressBase AddressBase::Within(std::string_view value) const {
    const AddressKind kind = Classify(value);
    if (!m_usable || kind == AddressKind::Empty || kind == AddressKind::Fragment) return *this;
    const std::string joined = Join(value).value_or(std::string(value));
    const AddressBase inner(NormalisePath(Trim(joined).address), false);
    return inner.m_usable ? inner : *this;
}

// Keeps the query and fragment of the address; its separators become "/".
std::string AddressBase::JoinPath(std::string path, std::string_view address) const {
    std::size_t position = 0;
    for (bool more = true; more;) {
        const Segment segment = ReadSegment(address, position);
        Step(path, segment, IsRelative());
        position += segment.text.size() + segment.separator;
        more = segment.separator > 0;
    }
    return path.append(address.substr(position));
}

std::optional<std::string> AddressBase::Join(std::string_view value) const {
    if (!m_usable) return std::nullopt;
    const TrimmedValue trimmed = Trim(value);
    std::string path;
    switch (Classify(value)) {
        case AddressKind::Path: path = JoinPath(m_folder, trimmed.address); break;
        case AddressKind::Rooted:
            if (m_isFolder || m_root.size() < 2) return std::nullopt;
            path = JoinPath({}, trimmed.address.substr(ReadSegment(trimmed.address, 0).separator));
            break;
        case AddressKind::Query:
            if (m_isFolder) return std::nullopt;
            path = m_folder + m_name + std::string(trimmed.address);
            break;
        default: return std::nullopt;
    }
    std::string joined = m_root + path;
    // An empty first name, or one with a colon, would change the address's kind.
    if (IsRelative() && Classify(joined) != AddressKind::Path) joined = "./" + joined;
    if (m_root == "/" && Classify(joined) == AddressKind::Host) joined = "/./" + path;
    return std::string(trimmed.before) + joined + std::string(trimmed.after);
}

}  // namespace qv::html

std::optional<std::string> qv::RebaseAddress(std::string_view value, std::string_view newBase) {
    return html::AddressBase::FromCaller(newBase).Join(value);
}
