#pragma once

#include <functional>
#include <string>

/// Compares counts of living things before and after each test, and fails the test that leaves
/// more behind than it found. What is exempt is named by addLeakExemption().
///
/// @p name appears in the failure, for example "nodes". Called once per kind, from main().
void addLeakCounter(const std::string& name, std::function<long()> counter);

/// Takes out of a counter what may stay, named by @p what. May be called before the counter is
/// added, from an initialiser of a static object.
void addLeakExemption(const std::string& counter, const std::string& what,
                      std::function<long()> count);

/// Installs the guard for all tests of the program; main() calls it once.
void installLeakGuard();

/// For a test that leaves things behind on purpose: the counts are not compared at its end.
void allowLeaksInThisTest();
