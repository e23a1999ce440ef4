#pragma once

#include "core/CommonExport.h"

#include <functional>

// A paired start and end action for a module of the host, declared as a
// static object: the start runs at construction, the end at destruction.
class COMMON_EXPORT TExitCleanup
{
public:
    explicit TExitCleanup(std::function<void()> exit = {}) : m_exit(std::move(exit)) {}
    TExitCleanup(TExitCleanup const& other) = default;
    TExitCleanup& operator=(TExitCleanup const& other) = default;
    ~TExitCleanup() { RunExit(); }

protected:
    void RunExit()
    {
        if (m_exit) {
            m_exit();
            m_exit = nullptr;
        }
    }

private:
    std::function<void()> m_exit;
};

class COMMON_EXPORT TStaticInit : public TExitCleanup
{
public:
    TStaticInit(std::function<void()> const& init, std::function<void()> exit)
        : TExitCleanup(std::move(exit))
    {
        if (init)
            init();
    }
};
