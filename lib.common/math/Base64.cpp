#include "math/Base64.h"

#include "math/FastKernels.h"
#include "text/TString.h"

#include <cstdint>
#include <cstring>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Every 12 bits of input as the two characters they become.
struct TPairTable
{
    uint16_t entry[4096];
};

constexpr TPairTable MakePairTable()
{
    TPairTable table {};
    for (unsigned i = 0; i < 4096; ++i) {
        auto const first = static_cast<unsigned char>(kAlphabet[i >> 6]);
        auto const second = static_cast<unsigned char>(kAlphabet[i & 63]);
        // Memory order: the first character at the lower address.
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        table.entry[i] = static_cast<uint16_t>(first | (second << 8));
#else
        table.entry[i] = static_cast<uint16_t>((first << 8) | second);
#endif
    }
    return table;
}

constexpr TPairTable s_pairs = MakePairTable();

// Decoding classes beyond the 64 digit values.
constexpr uint8_t kFiller = 64;
constexpr uint8_t kSkip = 65;
constexpr uint8_t kEnd = 66;

struct TDecodeTables
{
    uint8_t value[256];
    // Per position in a group: the digit's bits in place, or kInvalid for
    // anything that needs the careful path.
    uint32_t placed[4][256];
};

constexpr uint32_t kInvalid = 0x80000000u;

constexpr TDecodeTables MakeDecodeTables()
{
    TDecodeTables tables {};
    for (int c = 0; c < 256; ++c) {
        tables.value[c] = kSkip;
        for (int k = 0; k < 4; ++k)
            tables.placed[k][c] = kInvalid;
    }
    for (uint32_t v = 0; v < 64; ++v) {
        auto const c = static_cast<unsigned char>(kAlphabet[v]);
        tables.value[c] = static_cast<uint8_t>(v);
        for (int k = 0; k < 4; ++k)
            tables.placed[k][c] = v << (18 - 6 * k);
    }
    tables.value[static_cast<unsigned char>('=')] = kFiller;
    tables.value[0] = kEnd;
    return tables;
}

constexpr TDecodeTables s_decode = MakeDecodeTables();

inline void Store16(char* p, uint16_t v)
{
    std::memcpy(p, &v, 2);
}

inline uint32_t Placed(unsigned char const* p)
{
    auto const& t = s_decode.placed;
    return t[0][p[0]] | t[1][p[1]] | t[2][p[2]] | t[3][p[3]];
}

inline void Store3(unsigned char* out, uint32_t bits)
{
    out[0] = static_cast<unsigned char>(bits >> 16);
    out[1] = static_cast<unsigned char>(bits >> 8);
    out[2] = static_cast<unsigned char>(bits);
}

// Whole groups of four plain digits, the bulk through the kernel; stops
// before the first group that holds anything else.
unsigned char const* DecodePlainGroups(unsigned char const* p, unsigned char const* end, unsigned char*& out)
{
    size_t const bulk = FastKernels().base64Decode(p, size_t(end - p), out);
    p += bulk;
    out += bulk / 4 * 3;
    while (end - p >= 4) {
        uint32_t const a = Placed(p);
        if (a & kInvalid)
            break;
        Store3(out, a);
        out += 3;
        p += 4;
    }
    return p;
}

int StoreGroup(uint8_t const group[4], unsigned char* out)
{
    uint32_t const bits = (uint32_t(group[0] & 63) << 18) | (uint32_t(group[1] & 63) << 12)
        | (uint32_t(group[2] & 63) << 6) | uint32_t(group[3] & 63);
    int const count = group[3] != kFiller ? 3 : group[2] != kFiller ? 2 : 1;
    out[0] = static_cast<unsigned char>(bits >> 16);
    if (count > 1)
        out[1] = static_cast<unsigned char>(bits >> 8);
    if (count > 2)
        out[2] = static_cast<unsigned char>(bits);
    return count;
}

} // namespace

size_t Base64EncodeWords(unsigned char const* data, size_t size, char* text)
{
    auto const& pairs = s_pairs.entry;
    size_t done = 0;
    // Six bytes from each eight-byte read.
    for (; size - done >= 8; done += 6, text += 8) {
        uint64_t word;
        std::memcpy(&word, data + done, 8);
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
        word = __builtin_bswap64(word);
#endif
        Store16(text, pairs[(word >> 52) & 0xFFF]);
        Store16(text + 2, pairs[(word >> 40) & 0xFFF]);
        Store16(text + 4, pairs[(word >> 28) & 0xFFF]);
        Store16(text + 6, pairs[(word >> 16) & 0xFFF]);
    }
    return done;
}

size_t Base64DecodeWords(unsigned char const* text, size_t length, unsigned char* data)
{
    size_t done = 0;
    for (; length - done >= 8; done += 8, data += 6) {
        uint32_t const a = Placed(text + done);
        uint32_t const b = Placed(text + done + 4);
        if ((a | b) & kInvalid)
            break;
        Store3(data, a);
        Store3(data + 3, b);
    }
    return done;
}

int Base64EncodedSize(int size)
{
    if (size < 1)
        return 0;
    return 4 * (size / 3) + (size % 3 ? 4 : 0);
}

int EncodeBase64(void const* data, int size, char* text)
{
    if (!data || !text || size < 1)
        return 0;
    auto const* p = static_cast<unsigned char const*>(data);
    char* out = text;
    size_t n = static_cast<size_t>(size);
    auto const& pairs = s_pairs.entry;
    size_t const bulk = FastKernels().base64Encode(p, n, out);
    p += bulk;
    n -= bulk;
    out += bulk / 3 * 4;
    for (; n >= 3; n -= 3, p += 3, out += 4) {
        uint32_t const bits = (uint32_t(p[0]) << 16) | (uint32_t(p[1]) << 8) | p[2];
        Store16(out, pairs[bits >> 12]);
        Store16(out + 2, pairs[bits & 0xFFF]);
    }
    if (n > 0) {
        uint32_t const bits = (uint32_t(p[0]) << 16) | (n > 1 ? uint32_t(p[1]) << 8 : 0);
        out[0] = kAlphabet[bits >> 18];
        out[1] = kAlphabet[(bits >> 12) & 63];
        out[2] = n > 1 ? kAlphabet[(bits >> 6) & 63] : '=';
        out[3] = '=';
        out += 4;
    }
    return static_cast<int>(out - text);
}

TString<char> EncodeBase64(double value)
{
    char text[12];
    int const length = EncodeBase64(&value, sizeof value, text);
    return TString<char>(text, length_t(length));
}

TString<char> EncodeBase64(float value)
{
    char text[8];
    int const length = EncodeBase64(&value, sizeof value, text);
    return TString<char>(text, length_t(length));
}

int Base64DecodedMaxSize(int textLength)
{
    if (textLength < 1)
        return 0;
    return 3 * (textLength / 4) + (textLength % 4 ? 3 : 0);
}

int DecodeBase64(char const* text, void* data)
{
    if (!text)
        return 0;
    size_t const length = std::strlen(text);
    if (length > 0x7FFFFFFF)
        return 0;
    return DecodeBase64(text, static_cast<int>(length), data);
}

int DecodeBase64(char const* text, int length, void* data)
{
    if (!text || !data || length < 1)
        return 0;
    auto const* p = reinterpret_cast<unsigned char const*>(text);
    auto const* const end = p + length;
    auto* const start = static_cast<unsigned char*>(data);
    unsigned char* out = start;
    uint8_t group[4];
    int held = 0;
    for (;;) {
        if (held == 0)
            p = DecodePlainGroups(p, end, out);
        if (p == end)
            break;
        uint8_t const value = s_decode.value[*p++];
        if (value == kEnd)
            break;
        if (value == kSkip)
            continue;
        group[held++] = value;
        if (held == 4) {
            out += StoreGroup(group, out);
            held = 0;
        }
    }
    if (held > 0) {
        for (int k = held; k < 4; ++k)
            group[k] = kFiller;
        out += StoreGroup(group, out);
    }
    return static_cast<int>(out - start);
}
