#pragma once

struct Arguments;

// The commands of the program. Each returns the exit status.

int runView(const Arguments& arguments);
int runRender(const Arguments& arguments);
int runCheck(const Arguments& arguments);
int runTree(const Arguments& arguments);
