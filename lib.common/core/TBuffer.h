#pragma once

#include "core/EAutoDelete.h"
#include "math/FastMemory.h"
#include "math/MemoryAlloc.h"

#include <type_traits>

// A plain block of size elements of T, owned or only wrapped. Owned blocks
// come from malloc_ex and go back by free_ex. Sizes count elements.
template <class T>
class TBuffer
{
    static_assert(std::is_trivially_copyable_v<T>, "TBuffer holds plain data");

public:
    TBuffer() = default;
    TBuffer(T* data, int size, EAutoDelete autoDelete) : m_data(data), m_size(size), m_owns(autoDelete == autoDeleteOn) {}
    explicit TBuffer(int size, EAutoDelete autoDelete = autoDeleteOn) : m_owns(autoDelete == autoDeleteOn)
    {
        Allocate(size);
    }
    // A copy owns a copy of the elements.
    TBuffer(TBuffer const& other) { Set(other.m_data, other.m_size); }
    TBuffer& operator=(TBuffer const& other)
    {
        if (&other != this)
            Set(other.m_data, other.m_size);
        return *this;
    }
    virtual ~TBuffer() { Reset(); }

    // An owned, uninitialised block of size elements in place of the current.
    void Init(int size)
    {
        Reset();
        m_owns = true;
        Allocate(size);
    }
    // Wraps data; with autoDeleteOn the buffer frees it at the end.
    void Init(T* data, int size, EAutoDelete autoDelete)
    {
        Reset();
        m_data = data;
        m_size = size;
        m_owns = autoDelete == autoDeleteOn;
    }
    // Resizes and keeps the elements that fit. A wrapped block is copied into
    // an owned one.
    void Realloc(int size)
    {
        if (!m_owns) {
            T* data = static_cast<T*>(malloc_ex(Bytes(size)));
            FastCopyEx(m_data, data, static_cast<size_t>(Bytes(size < m_size ? size : m_size)));
            m_data = data;
            m_owns = true;
        } else {
            m_data = static_cast<T*>(realloc_ex(m_data, Bytes(size)));
        }
        m_size = size;
    }
    void EnsureSize(int size)
    {
        if (size > m_size)
            Realloc(size);
    }
    // Frees an owned block; the buffer is empty and owning afterwards.
    void Reset()
    {
        if (m_owns)
            free_ex(m_data);
        m_data = nullptr;
        m_size = 0;
        m_owns = true;
    }
    // An owned copy of count elements from source.
    void Set(void const* source, int count)
    {
        T* data = count > 0 ? static_cast<T*>(malloc_ex(Bytes(count))) : nullptr;
        FastCopyEx(source, data, static_cast<size_t>(Bytes(count)));
        Reset();
        m_data = data;
        m_size = count > 0 ? count : 0;
    }
    // The same with the elements in reverse order.
    void SetReverse(void const* source, int count)
    {
        Set(source, count);
        for (int i = 0, j = m_size - 1; i < j; ++i, --j) {
            T t = m_data[i];
            m_data[i] = m_data[j];
            m_data[j] = t;
        }
    }
    void Fill(T value, int start, int count)
    {
        for (int i = start; i < start + count; ++i)
            m_data[i] = value;
    }
    void FillAll(T value) { Fill(value, 0, m_size); }
    void FillRef(T const& value, int start, int count)
    {
        for (int i = start; i < start + count; ++i)
            m_data[i] = value;
    }
    void FillRefAll(T const& value) { FillRef(value, 0, m_size); }
    void Zero() { FastZeroEx(m_data, Bytes(m_size)); }
    // The elements written to a TOutputMemoryStream, up to its position. With
    // adopt the buffer takes the stream's block itself, which the stream must
    // have been told not to free (auto-delete off); otherwise it copies.
    template <class Stream>
    void CaptureData(Stream const& stream, bool adopt)
    {
        int const count = static_cast<int>(stream.GetPosition() / sizeof(T));
        if (adopt)
            Init(reinterpret_cast<T*>(stream.Start()), count, autoDeleteOn);
        else
            Set(stream.Start(), count);
    }

    int Size() const { return m_size; }
    int GetByteSize() const { return Bytes(m_size); }
    bool IsValid() const { return m_data != nullptr; }
    bool OwnsData() const { return m_owns; }
    T* Start() { return m_data; }
    T const* ConstStart() const { return m_data; }
    T* End() { return m_data + m_size; }
    T const* ConstEnd() const { return m_data + m_size; }
    T* PointerAt(int index) { return m_data + index; }
    T const* ConstPointerAt(int index) const { return m_data + index; }
    T& ValueAt(int index) { return m_data[index]; }
    T const& ConstValueAt(int index) const { return m_data[index]; }
    T& operator[](int index) { return m_data[index]; }
    T const& operator[](int index) const { return m_data[index]; }
    operator T*() { return m_data; }
    operator T const*() const { return m_data; }

private:
    static int Bytes(int count) { return count * static_cast<int>(sizeof(T)); }
    void Allocate(int size)
    {
        m_data = size > 0 ? static_cast<T*>(malloc_ex(Bytes(size))) : nullptr;
        m_size = size > 0 ? size : 0;
    }

    T* m_data = nullptr;
    int m_size = 0;
    bool m_owns = true;
};
