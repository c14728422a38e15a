#include "LeakGuard.h"

#include <gtest/gtest.h>

#include <vector>

namespace {
struct Counter {
    std::string name;
    std::function<long()> count;
    long before = 0;
};

struct Exemption {
    std::string counter;
    std::string what;
    std::function<long()> count;
};

bool s_allowLeaks = false;

std::vector<Counter>& counters()
{
    static std::vector<Counter> list;
    return list;
}

std::vector<Exemption>& exemptions()
{
    static std::vector<Exemption> list;
    return list;
}

long countWithoutExempt(const Counter& counter)
{
    long count = counter.count();
    for (const Exemption& each : exemptions()) {
        if (each.counter == counter.name) count -= each.count();
    }
    return count;
}

std::string exemptNames(const std::string& counter)
{
    std::string names;
    for (const Exemption& each : exemptions()) {
        if (each.counter == counter) names += (names.empty() ? " beside " : ", ") + each.what;
    }
    return names;
}

class LeakGuard : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override
    {
        s_allowLeaks = false;
        for (Counter& each : counters()) each.before = countWithoutExempt(each);
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        if (s_allowLeaks) return;
        for (const Counter& each : counters()) {
            const long left = countWithoutExempt(each) - each.before;
            if (left > 0)
                ADD_FAILURE() << left << " " << each.name << " left behind by the test"
                              << exemptNames(each.name);
        }
    }
};
} // namespace

void addLeakCounter(const std::string& name, std::function<long()> counter)
{
    counters().push_back({name, std::move(counter), 0});
}

void addLeakExemption(const std::string& counter, const std::string& what,
                      std::function<long()> count)
{
    exemptions().push_back({counter, what, std::move(count)});
}

void installLeakGuard() { testing::UnitTest::GetInstance()->listeners().Append(new LeakGuard); }

void allowLeaksInThisTest() { s_allowLeaks = true; }
