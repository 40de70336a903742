#pragma once

namespace velometer {

/// Adds to a counter as long as it lives.
template <typename Counter>
class Held
{
public:
    explicit Held(Counter &sharedCounter, typename Counter::value_type share = 1)
        : counter(sharedCounter)
        , amount(share)
    {
        counter += amount;
    }
    ~Held() { counter -= amount; }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;

    void add(typename Counter::value_type more)
    {
        counter += more;
        amount += more;
    }

private:
    Counter &counter;
    typename Counter::value_type amount;
};

} // namespace velometer
