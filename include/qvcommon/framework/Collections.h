#pragma once

/// @file The framework's arrays, lists and maps, based on standard containers. They are value types: copying one copies
/// its elements. Indexes are 0-based; an index out of range raises CInvalidArgException* and changes nothing.

#include <iterator>
#include <list>
#include <map>
#include <utility>
#include <vector>

#include "qvcommon/framework/String.h"

/// A contiguous array of values. Appending is amortized O(1).
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    /// Creates an empty array.
    CArray() = default;
    /// Each: Creates an array with these elements.
    CArray(std::initializer_list<TYPE> items) : m_items(items) {}
    explicit CArray(std::vector<TYPE> items) : m_items(std::move(items)) {}
    template <std::input_iterator I>
    CArray(I first, I last) : m_items(first, last) {}

    /// Returns the number of elements.
    int GetSize() const { return static_cast<int>(m_items.size()); }
    /// Returns the last index; -1 if empty.
    int GetUpperBound() const { return GetSize() - 1; }
    /// Returns whether there are no elements.
    bool IsEmpty() const { return m_items.empty(); }
    /// Resizes. New elements are value-initialized: 0, null or empty. @throws CInvalidArgException* for a negative
    /// size.
    void SetSize(int size) {
        if (size < 0) AfxThrowInvalidArgException();
        m_items.resize(static_cast<std::size_t>(size));
    }
    /// Removes all elements.
    void RemoveAll() { m_items.clear(); }

    /// Each: Returns the element, valid until the array changes.
    const TYPE& GetAt(int index) const { return m_items[Checked(index)]; }
    TYPE& ElementAt(int index) { return m_items[Checked(index)]; }
    const TYPE& operator[](int index) const { return GetAt(index); }
    TYPE& operator[](int index) { return ElementAt(index); }
    /// Replaces the element.
    void SetAt(int index, ARG_TYPE item) { m_items[Checked(index)] = TYPE(item); }

    /// Appends an element and returns its index.
    int Add(ARG_TYPE item) {
        m_items.emplace_back(item);
        return GetUpperBound();
    }
    template <std::same_as<TYPE> T>
    requires(!std::is_trivially_copyable_v<T>) int Add(T&& item) {
        m_items.push_back(std::forward<T>(item));
        return GetUpperBound();
    }
    /// Appends an array and returns the index of the first new element.
    int Append(const CArray& other) {
        if (&other == this) return Append(CArray(other));
        const int first = GetSize();
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return first;
    }
    /// Replaces all elements by those of the other array.
    void Copy(const CArray& other) { m_items = other.m_items; }
    /// Inserts before the element at `index`, or at the end.
    void InsertAt(int index, ARG_TYPE item) {
        if (index != GetSize()) Checked(index);
        m_items.insert(m_items.begin() + index, TYPE(item));
    }
    /// Removes `count` elements from `index` on; no-op for a count of 0 or less.
    void RemoveAt(int index, int count = 1) {
        if (count <= 0) return;
        Checked(index);
        if (count > GetSize() - index) AfxThrowInvalidArgException();
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }

    /// Each: Iterators over the elements in order, for range-based loops.
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }
    /// Returns the elements as a standard vector.
    std::vector<TYPE>& AsStd() { return m_items; }
    const std::vector<TYPE>& AsStd() const { return m_items; }

    /// Compares sizes and elements.
    friend bool operator==(const CArray& a, const CArray& b) { return a.m_items == b.m_items; }

private:
    std::size_t Checked(int index) const {
        if (index < 0 || index >= GetSize()) AfxThrowInvalidArgException();
        return static_cast<std::size_t>(index);
    }

    std::vector<TYPE> m_items;
};

/// Strings.
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
/// Pointers; the objects are owned by the caller.
class QVCOMMON_API CPtrArray : public CArray<void*, void*> {
public:
    using CArray::CArray;
};
/// Numbers.
using CDoubleArray = CArray<double, double>;

/// A linked list of strings. Adding at either end is O(1).
class QVCOMMON_API CStringList : public CObject {
public:
    /// Creates an empty list.
    CStringList() = default;
    /// Creates a list with these strings.
    CStringList(std::initializer_list<CString> items) : m_items(items) {}

    /// Returns the number of strings.
    int GetCount() const { return static_cast<int>(m_items.size()); }
    /// Returns whether there are no strings.
    bool IsEmpty() const { return m_items.empty(); }
    /// Removes all strings.
    void RemoveAll() { m_items.clear(); }
    /// Prepends a string.
    void AddHead(std::string_view text) { m_items.emplace_front(text); }
    /// Appends a string.
    void AddTail(std::string_view text) { m_items.emplace_back(text); }
    template <std::same_as<CString> T>
    void AddTail(T&& text) {
        m_items.push_back(std::forward<T>(text));
    }

    /// Each: Iterators over the strings in order, for range-based loops.
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    /// Compares sizes and strings.
    friend bool operator==(const CStringList& a, const CStringList& b) { return a.m_items == b.m_items; }

private:
    std::list<CString> m_items;
};

/// A map with string keys, iterated in the byte order of its keys.
template <class VALUE, class ARG_VALUE>
class CStringMap : public CObject {
public:
    /// Returns the number of keys.
    int GetCount() const { return static_cast<int>(m_items.size()); }
    /// Returns whether there are no keys.
    bool IsEmpty() const { return m_items.empty(); }
    /// Removes all keys.
    void RemoveAll() { m_items.clear(); }
    /// Sets the value of a key, inserting it if missing.
    void SetAt(std::string_view key, ARG_VALUE value) { m_items.insert_or_assign(CString(key), VALUE(value)); }
    /// Returns the value of a key, inserting an empty one if missing. Valid until the key is removed.
    VALUE& operator[](std::string_view key) { return m_items[CString(key)]; }
    /// Returns false, leaving `value` unchanged, if the key is absent.
    bool Lookup(std::string_view key, VALUE& value) const {
        const auto found = m_items.find(key);
        if (found == m_items.end()) return false;
        value = found->second;
        return true;
    }
    /// Returns true if the key existed.
    bool RemoveKey(std::string_view key) {
        const auto found = m_items.find(key);
        if (found == m_items.end()) return false;
        m_items.erase(found);
        return true;
    }

    /// Each: Iterators over pairs of key and value in key order, for range-based loops.
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

private:
    std::map<CString, VALUE, std::less<>> m_items;
};

/// Strings by string keys.
class QVCOMMON_API CMapStringToString : public CStringMap<CString, std::string_view> {};
/// Pointers by string keys; the objects are owned by the caller.
class QVCOMMON_API CMapStringToPtr : public CStringMap<void*, void*> {};
