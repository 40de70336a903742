#pragma once

#include <functional>
#include <memory>
#include <string>

namespace velometer {

/// Reverse look-ups on a few threads of its own. A resolver that hangs occupies those and nobody
/// else: whoever comes then gets the address back. Safe from every thread.
class HostNames
{
public:
    /// Gives the name of an address, or an empty text; may block as long as it likes.
    using Resolver = std::function<std::string(const std::string &address)>;
    using Callback = std::function<void(std::string)>;

    /// @p resolver empty: the system's.
    explicit HostNames(Resolver resolver);

    ~HostNames(); ///< closes

    /// Forgets the callbacks not called yet; returns at once even if look-ups hang.
    void close();

    HostNames(const HostNames &) = delete;
    HostNames &operator=(const HostNames &) = delete;

    /// Calls @p done, on a thread of its own or within this call, with the name, or with @p address
    /// when there is none, when the pool is full, or when the name has characters that do not
    /// belong into a name.
    void lookUp(const std::string &address, Callback done);

private:
    struct State;
    static void work(const std::shared_ptr<State> &state);
    std::shared_ptr<State> state;
};

} // namespace velometer
