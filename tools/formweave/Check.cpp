#include "Commands.h"

#include "Arguments.h"
#include "DialogFile.h"
#include "Session.h"

#include <cstdio>

int runCheck(const Arguments& arguments)
{
    const Session session(Session::OffScreen);
    bool wrong = false;
    for (const std::string& path : arguments.files) {
        const DialogFile file(path);
        file.printErrors(stdout);
        wrong = wrong || !file.errors.empty();
    }
    return wrong ? Failed : Done;
}
