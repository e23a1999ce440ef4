#pragma once

#include "core/CommonExport.h"
#include "persist/StreamEnums.h"

// Root of the byte streams: it holds only the byte order.
class COMMON_EXPORT TStream
{
public:
    explicit TStream(EEndianType endianType = endianNoSwap) : m_endianType(endianType) {}
    TStream(TStream const&) = default;
    TStream& operator=(TStream const&) = default;
    virtual ~TStream();

    virtual unsigned int GetCurrentPosition() const = 0;
    virtual void SetCurrentPosition(unsigned int position) = 0;

    EEndianType GetEndianType() const { return m_endianType; }
    void SetEndianType(EEndianType endianType) { m_endianType = endianType; }
    bool MustSwap() const { return m_endianType != endianNoSwap; }

protected:
    EEndianType m_endianType;
};
