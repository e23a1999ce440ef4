#pragma once

// Library-internal: room for a piece of output that is usually short. It
// lives on the stack up to 512 bytes and on the heap above.

#include "math/MemoryAlloc.h"

class TComposeBuffer
{
public:
    explicit TComposeBuffer(unsigned int size)
        : m_data(size <= sizeof(m_local) ? m_local : static_cast<char*>(malloc_ex(static_cast<int>(size))))
    {
    }
    ~TComposeBuffer()
    {
        if (m_data != m_local)
            free_ex(m_data);
    }
    TComposeBuffer(TComposeBuffer const&) = delete;
    TComposeBuffer& operator=(TComposeBuffer const&) = delete;

    char* Data() { return m_data; }

private:
    alignas(16) char m_local[512];
    char* m_data;
};
