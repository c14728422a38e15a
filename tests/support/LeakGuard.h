#pragma once

#include <functional>
#include <string>

/// Compares counts of living things before and after each test, and fails the test that leaves
/// more behind than it found. What is exempt (loaded skins, the file cache, parentless windows) is
/// subtracted by the counter itself, which thereby names it.
///
/// @p name appears in the failure, for example "nodes". Called once per kind, from main().
void addLeakCounter(const std::string& name, std::function<long()> counter);

/// Installs the guard for all tests of the program; main() calls it once.
void installLeakGuard();

/// For a test that leaves things behind on purpose: the counts are not compared at its end.
void allowLeaksInThisTest();
