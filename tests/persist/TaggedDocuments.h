#pragma once

#include "persist/TTaggedOutputStream.h"

#include <QByteArray>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

using Bytes = std::vector<unsigned char>;
using Strings = std::vector<std::string>;

inline std::string ModeName(::testing::TestParamInfo<EStreamMode> const& info)
{
    return info.param == streamModePlain ? "Plain" : info.param == streamModeRawTags ? "RawTags" : "Xml";
}

// A finished document of the given calls.
template <class Write> QByteArray Document(EStreamMode mode, Write write, char const* fileType = "Test")
{
    TTaggedOutputStream out(mode, fileType);
    write(out);
    return out.GetAsByteArray();
}

inline int32_t IntAt(void const* bytes, int offset)
{
    int32_t value;
    std::memcpy(&value, static_cast<char const*>(bytes) + offset, 4);
    return value;
}

// One node of a raw document as a reader sees it: next, size byte, data
// offset and name offset, then for a group parent, first and last child.
struct Node
{
    int offset;
    std::string name;
    int sizeByte;
    int dataOffset;
    int nameOffset;
    Bytes data;
};

inline std::vector<Node> Children(Bytes const& bytes, int group)
{
    std::vector<Node> nodes;
    for (int node = IntAt(bytes.data(), group + 12); node != 0; node = IntAt(bytes.data(), node)) {
        Node n { node, std::string(), bytes[node + 4], bytes[node + 5], bytes[node + 6], Bytes() };
        n.name = reinterpret_cast<char const*>(bytes.data() + node + n.nameOffset);
        if (n.dataOffset != 0) {
            int const size = n.sizeByte ? n.sizeByte : IntAt(bytes.data(), node + 8);
            n.data.assign(bytes.begin() + node + n.dataOffset, bytes.begin() + node + n.dataOffset + size);
        }
        nodes.push_back(n);
    }
    return nodes;
}

inline Strings Names(std::vector<Node> const& nodes)
{
    Strings names;
    for (Node const& node : nodes)
        names.push_back(node.name);
    return names;
}

inline Bytes Document(TTaggedOutputStream& stream)
{
    unsigned int const size = stream.CloseWriting();
    return Bytes(stream.Start(), stream.Start() + size);
}

inline std::string Text(TTaggedOutputStream& stream)
{
    unsigned int const size = stream.CloseWriting();
    return std::string(reinterpret_cast<char const*>(stream.Start()), size);
}

template <class T> Bytes BytesOf(T value)
{
    Bytes bytes(sizeof(T));
    std::memcpy(bytes.data(), &value, sizeof(T));
    return bytes;
}

// Bytes written as hex digits; spaces only group them for the eye.
inline Bytes Hex(char const* digits)
{
    Bytes bytes;
    for (int high = -1; *digits; ++digits) {
        if (*digits == ' ')
            continue;
        int const value = *digits <= '9' ? *digits - '0' : (*digits | 0x20) - 'a' + 10;
        if (high < 0) {
            high = value;
        } else {
            bytes.push_back(static_cast<unsigned char>(high * 16 + value));
            high = -1;
        }
    }
    return bytes;
}
