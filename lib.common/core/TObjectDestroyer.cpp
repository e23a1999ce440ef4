#include "core/TObjectDestroyer.h"

#include "diag/LogCategories.h"

#include <utility>

TObjectDestroyer::~TObjectDestroyer()
{
    // A destructor must not throw: an empty action, which would raise
    // bad_function_call, is skipped here and reported instead.
    try {
        DestroyAll();
    } catch (std::bad_function_call const&) {
        qCWarning(LogNoGoZone) << "TObjectDestroyer" << 1;
    }
}

void TObjectDestroyer::Add(std::function<void()> action)
{
    m_actions.push_back(std::move(action));
}

void TObjectDestroyer::DestroyAll()
{
    std::vector<std::function<void()>> actions;
    actions.swap(m_actions);
    for (auto it = actions.rbegin(); it != actions.rend(); ++it)
        (*it)();
}
