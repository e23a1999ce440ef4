// Any text opened as an XML tagged document is turned into a tree that
// reads without leaving its block, or is refused as damaged.
// Input: the text.

#include "FuzzTaggedExplore.h"

#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(uint8_t const* data, size_t size)
{
    FuzzTagged::InstallQuietHandler();
    // Exactly the input's bytes, with no terminator behind them.
    void* text = std::malloc(size ? size : 1);
    std::memcpy(text, data, size);
    {
        TTaggedInputStream in(streamModeXml, text, static_cast<int>(size), checksumOn);
        FuzzTagged::Explore(in);
    }
    std::free(text);
    return 0;
}
