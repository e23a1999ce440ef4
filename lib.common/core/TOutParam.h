#pragma once

// An argument that the callee writes. The call site says so visibly:
// GetDrives(TOutParam<bool>(&hasFloppy)). The callee writes on every path.
template <class T>
class TOutParam
{
public:
    explicit TOutParam(T* target) : m_target(target) {}

    TOutParam& operator=(T const& value)
    {
        *m_target = value;
        return *this;
    }
    T& operator*() const { return *m_target; }
    T* operator->() const { return m_target; }
    T* Get() const { return m_target; }

private:
    T* m_target;
};
