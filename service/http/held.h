#pragma once

/// Adds to a counter as long as it lives.
template <typename Counter>
class Held
{
public:
    explicit Held(Counter &counter, typename Counter::value_type amount = 1)
        : m_counter(counter)
        , m_amount(amount)
    {
        m_counter += m_amount;
    }
    ~Held() { m_counter -= m_amount; }
    Held(const Held &) = delete;
    Held &operator=(const Held &) = delete;

    void add(typename Counter::value_type amount)
    {
        m_counter += amount;
        m_amount += amount;
    }

private:
    Counter &m_counter;
    typename Counter::value_type m_amount;
};
