// SPDX-License-Identifier: MIT
// Saves the settings and the history again and again until it is killed. Everything in a state is
// made from its number, which is written to standard output once both are saved.
// Usage: save_forever <home> <first number> <characters of a transcript>
#include "models/Paths.h"
#include "storage/tests/NumberedState.h"

#include <QString>

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

int main(int argc, char** argv) {
    using namespace sayloft;

    if (argc != 4)
        return 2;
    fixPaths(QStringLiteral("/nowhere"), QString::fromLocal8Bit(argv[1]));
    const int size = std::atoi(argv[3]);
    History history;
    for (int number = std::atoi(argv[2]);; ++number) {
        test::settingsOf(number).save();
        history.add(test::transcriptOf(number, size));
        if (::write(STDOUT_FILENO, &number, sizeof(number)) != sizeof(number))
            return 1;
    }
}
