#include "LeakGuard.h"

#include <gtest/gtest.h>

#include <vector>

namespace {
struct Counter {
    std::string name;
    std::function<long()> count;
    long before = 0;
};

bool s_allowLeaks = false;

std::vector<Counter>& counters()
{
    static std::vector<Counter> list;
    return list;
}

class LeakGuard : public testing::EmptyTestEventListener {
public:
    void OnTestStart(const testing::TestInfo&) override
    {
        s_allowLeaks = false;
        for (Counter& each : counters()) each.before = each.count();
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        if (s_allowLeaks) return;
        for (const Counter& each : counters()) {
            const long left = each.count() - each.before;
            if (left > 0) ADD_FAILURE() << left << " " << each.name << " left behind by the test";
        }
    }
};
} // namespace

void addLeakCounter(const std::string& name, std::function<long()> counter)
{
    counters().push_back({name, std::move(counter), 0});
}

void installLeakGuard() { testing::UnitTest::GetInstance()->listeners().Append(new LeakGuard); }

void allowLeaksInThisTest() { s_allowLeaks = true; }
