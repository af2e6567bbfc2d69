#pragma once

/// @file The framework's arrays, lists and maps over standard containers. They are values: copying one copies its elements.
/// Indexes are 0-based; an index outside the array raises CInvalidArgException* and changes nothing.

#include <iterator>
#include <list>
#include <map>
#include <utility>
#include <vector>

#include "qvcommon/framework/String.h"

/// An array of values, in one piece. Adding at its end takes constant time on average.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    /// No elements.
    CArray() = default;
    /// Each: with these elements.
    CArray(std::initializer_list<TYPE> items) : m_items(items) {}
    explicit CArray(std::vector<TYPE> items) : m_items(std::move(items)) {}
    template <std::input_iterator I>
    CArray(I first, I last) : m_items(first, last) {}

    /// The number of elements.
    int GetSize() const { return static_cast<int>(m_items.size()); }
    /// The last index; -1 without elements.
    int GetUpperBound() const { return GetSize() - 1; }
    /// Whether there are no elements.
    bool IsEmpty() const { return m_items.empty(); }
    /// New elements are value-initialised: 0, null or empty. @throws CInvalidArgException* for a negative size.
    void SetSize(int size) {
        if (size < 0) AfxThrowInvalidArgException();
        m_items.resize(static_cast<std::size_t>(size));
    }
    /// Removes all elements.
    void RemoveAll() { m_items.clear(); }

    /// Each: the element, valid until the array changes.
    const TYPE& GetAt(int index) const { return m_items[Checked(index)]; }
    TYPE& ElementAt(int index) { return m_items[Checked(index)]; }
    const TYPE& operator[](int index) const { return GetAt(index); }
    TYPE& operator[](int index) { return ElementAt(index); }
    /// Replaces the element.
    void SetAt(int index, ARG_TYPE item) { m_items[Checked(index)] = TYPE(item); }

    /// Returns the index of the new element.
    int Add(ARG_TYPE item) {
        m_items.emplace_back(item);
        return GetUpperBound();
    }
    template <std::same_as<TYPE> T>
    requires(!std::is_trivially_copyable_v<T>) int Add(T&& item) {
        m_items.push_back(std::forward<T>(item));
        return GetUpperBound();
    }
    /// Returns the index of the first element appended.
    int Append(const CArray& other) {
        const int first = GetSize();
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return first;
    }
    /// Replaces all elements by those of the other array.
    void Copy(const CArray& other) { m_items = other.m_items; }
    /// At the array's end or before the element at `index`.
    void InsertAt(int index, ARG_TYPE item) {
        if (index != GetSize()) Checked(index);
        m_items.insert(m_items.begin() + index, TYPE(item));
    }
    /// Removes so many elements from `index` on; none for a count of 0 or less.
    void RemoveAt(int index, int count = 1) {
        if (count <= 0) return;
        Checked(index);
        Checked(index + count - 1);
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }

    /// Each: the elements in their order, for loops over a range.
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }
    /// The elements as the standard library's vector, for code that speaks that.
    std::vector<TYPE>& AsStd() { return m_items; }
    const std::vector<TYPE>& AsStd() const { return m_items; }

    /// By size and elements.
    friend bool operator==(const CArray& a, const CArray& b) { return a.m_items == b.m_items; }

private:
    std::size_t Checked(int index) const {
        if (index < 0 || index >= GetSize()) AfxThrowInvalidArgException();
        return static_cast<std::size_t>(index);
    }

    std::vector<TYPE> m_items;
};

/// Texts.
class QVCOMMON_API CStringArray : public CArray<CString, std::string_view> {
public:
    using CArray::CArray;
};
/// Unsigned numbers.
class QVCOMMON_API CUIntArray : public CArray<UINT, UINT> {
public:
    using CArray::CArray;
};
/// Unsigned numbers of 32 bits.
class QVCOMMON_API CDWordArray : public CArray<DWORD, DWORD> {
public:
    using CArray::CArray;
};
/// Pointers, whose objects belong to the caller.
class QVCOMMON_API CPtrArray : public CArray<void*, void*> {
public:
    using CArray::CArray;
};
/// Numbers.
using CDoubleArray = CArray<double, double>;

/// A list of texts. Adding at either end takes constant time.
class QVCOMMON_API CStringList : public CObject {
public:
    /// No texts.
    CStringList() = default;
    /// With these texts.
    CStringList(std::initializer_list<CString> items) : m_items(items) {}

    /// The number of texts.
    int GetCount() const { return static_cast<int>(m_items.size()); }
    /// Whether there are no texts.
    bool IsEmpty() const { return m_items.empty(); }
    /// Removes all texts.
    void RemoveAll() { m_items.clear(); }
    /// Puts a text before the first one.
    void AddHead(std::string_view text) { m_items.emplace_front(text); }
    /// Puts a text after the last one.
    void AddTail(std::string_view text) { m_items.emplace_back(text); }
    template <std::same_as<CString> T>
    void AddTail(T&& text) {
        m_items.push_back(std::forward<T>(text));
    }

    /// Each: the texts in their order, for loops over a range.
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    /// By number and texts.
    friend bool operator==(const CStringList& a, const CStringList& b) { return a.m_items == b.m_items; }

private:
    std::list<CString> m_items;
};

/// A map by texts, walked in the byte order of its keys.
template <class VALUE, class ARG_VALUE>
class CStringMap : public CObject {
public:
    /// The number of keys.
    int GetCount() const { return static_cast<int>(m_items.size()); }
    /// Whether there are no keys.
    bool IsEmpty() const { return m_items.empty(); }
    /// Removes all keys.
    void RemoveAll() { m_items.clear(); }
    /// Sets the value of a key, which is added when it is missing.
    void SetAt(std::string_view key, ARG_VALUE value) { m_items.insert_or_assign(CString(key), VALUE(value)); }
    /// The value of a key, which is added with an empty one when it is missing. Valid until the key is removed.
    VALUE& operator[](std::string_view key) { return m_items[CString(key)]; }
    /// False, and `value` left alone, when the key is absent.
    bool Lookup(std::string_view key, VALUE& value) const {
        const auto found = m_items.find(key);
        if (found == m_items.end()) return false;
        value = found->second;
        return true;
    }
    /// True when the key was there.
    bool RemoveKey(std::string_view key) {
        const auto found = m_items.find(key);
        if (found == m_items.end()) return false;
        m_items.erase(found);
        return true;
    }

    /// Each: pairs of key and value in the order of the keys, for loops over a range.
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::map<CString, VALUE, std::less<>> m_items;
};

/// Texts by texts.
class QVCOMMON_API CMapStringToString : public CStringMap<CString, std::string_view> {};
/// The pointers' objects belong to the caller.
class QVCOMMON_API CMapStringToPtr : public CStringMap<void*, void*> {};
