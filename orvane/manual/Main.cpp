// orvane-manual reference|stub: prints the reference page or the typed stub.

#include "orvane/manual/Manual.h"

#include <iostream>
#include <string_view>

int main(int argc, char **argv)
{
    const std::string_view what = argc == 2 ? argv[1] : "";
    if (what == "reference") {
        orvane::manual::WriteReferencePage(std::cout, ORVANE_VERSION);
    } else if (what == "stub") {
        orvane::manual::WriteStub(std::cout, ORVANE_VERSION);
    } else {
        std::cerr << "usage: orvane-manual reference|stub\n";
        return 2;
    }
    return std::cout.flush() ? 0 : 1;
}
