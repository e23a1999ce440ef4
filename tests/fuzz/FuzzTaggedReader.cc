// Any block opened as a tagged document either is refused as damaged or
// reads without leaving the block, whatever is looked up in it.
// Input: one byte of flags (bit 0 raw tags, else plain; bit 1 checksum on;
// bit 2 exceptions allowed), then the document.

#include "FuzzTaggedExplore.h"

#include "diag/TException.h"

#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    FuzzTagged::InstallQuietHandler();
    if (size < 1)
        return 0;
    uint8_t const flags = data[0];
    EStreamMode const mode = flags & 1 ? streamModeRawTags : streamModePlain;
    EChecksum const checksum = flags & 2 ? checksumOn : checksumOff;
    ECanException const canException = flags & 4 ? canExceptionYes : canExceptionNo;
    // A block of its own, owned by the stream as a loaded file would be.
    auto const length = static_cast<int>(size - 1);
    void* block = std::malloc(size - 1 ? size - 1 : 1);
    std::memcpy(block, data + 1, size - 1);
    try {
        TTaggedInputStream in(mode, block, length, checksum, autoDeleteOff, canException);
        if (mode == streamModePlain)
            FuzzTagged::ReadPlain(in);
        else
            FuzzTagged::Explore(in);
    } catch (TException const&) {
    }
    std::free(block);
    return 0;
}
