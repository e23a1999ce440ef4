#pragma once

// Byte order of a stream's data. The machine is little-endian; with
// endianSwap every multi-byte number is reversed on its way in and out.
enum EEndianType : int
{
    endianNoSwap = 0,
    endianSwap = 1,
};

// How a value's Read and Write lay it out: binary, or as text for XML.
enum EDataFormat : int
{
    dataFormatBinary = 0,
    dataFormatText = 1,
};

// Which XML tag WriteXML writes. Only xmlEnd has a meaning of its own:
// every other value opens.
enum EStartEnd : int
{
    xmlStart = 0,
    xmlEnd = 2,
};
