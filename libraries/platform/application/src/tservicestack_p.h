#pragma once

#include <QList>

/// The installed implementations of one application service, most recent
/// last. Installing pushes, uninstalling removes the instance wherever it
/// stands, so services may be installed and removed in any order and the one
/// installed before comes back when the current one goes away.
template <typename T>
class TServiceStack
{
public:
    T* current() const { return m_stack.isEmpty() ? nullptr : m_stack.last(); }

    void install(T* service)
    {
        if (!service)
            return;
        m_stack.removeAll(service);
        m_stack.append(service);
    }

    void uninstall(T* service) { m_stack.removeAll(service); }

private:
    QList<T*> m_stack;
};
