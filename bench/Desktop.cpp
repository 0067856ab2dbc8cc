// SPDX-License-Identifier: MIT
#include "bench/Desktop.h"

#include "tests/support/SayloftProgram.h"

namespace sayloft::bench {

Desktop::Desktop() {
    test::writeConfig(home(), R"({"model":"starter"})");
}

QProcessEnvironment Desktop::environment() const {
    QProcessEnvironment environment = m_server.environment();
    environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
    m_soundServer.addTo(environment);
    m_bus.addTo(environment);
    return environment;
}

}  // namespace sayloft::bench
