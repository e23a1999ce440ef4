#pragma once

#include "core/CommonExport.h"

#include <functional>
#include <vector>

// Clean-up actions run last-added first.
class COMMON_EXPORT TObjectDestroyer
{
public:
    TObjectDestroyer() = default;
    TObjectDestroyer(TObjectDestroyer const&) = delete;
    TObjectDestroyer& operator=(TObjectDestroyer const&) = delete;
    ~TObjectDestroyer();

    void Add(std::function<void()> action);
    // Runs every action from the last to the first, then forgets them. An
    // empty action raises std::bad_function_call.
    void DestroyAll();
    int Count() const { return static_cast<int>(m_actions.size()); }

private:
    std::vector<std::function<void()>> m_actions;
};
