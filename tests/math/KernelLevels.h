#pragma once

#include "math/FastMemory.h"

#include <gtest/gtest.h>

#include <vector>

// Every kernel level this processor can run, so that each set is checked
// here and not only the one picked for it.
inline std::vector<int> RunnableKernelLevels()
{
    std::vector<int> levels;
    for (int level = 1; level <= BestFastMemoryDispatchLevel(); ++level)
        if (SetFastMemoryDispatchLevel(level))
            levels.push_back(level);
    InitFastMemoryDispatch();
    return levels;
}

// Runs body once per level and puts the best level back afterwards.
template <class Body> void ForEachKernelLevel(Body body)
{
    for (int level : RunnableKernelLevels()) {
        SCOPED_TRACE(::testing::Message() << "kernel level " << level);
        ASSERT_TRUE(SetFastMemoryDispatchLevel(level));
        body();
    }
    InitFastMemoryDispatch();
}
