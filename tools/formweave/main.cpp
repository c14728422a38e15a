// formweave: looks at dialog files from the command line.

#include "Arguments.h"

int main(int argc, char** argv)
{
    return runCommandLine(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
}
