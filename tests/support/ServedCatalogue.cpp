// SPDX-License-Identifier: MIT
#include "tests/support/ServedCatalogue.h"

#include "tests/support/Nginx.h"

namespace sayloft::test {

ServedCatalogue::ServedCatalogue(const Nginx& nginx) : m_nginx(nginx), m_before(MODELS) {
    for (ModelInfo& model : MODELS) {
        // A bundled model has no address.
        if (!model.url.isEmpty())
            model.url = nginx.url(QLatin1Char('/') + model.file).toString();
    }
}

ServedCatalogue::~ServedCatalogue() {
    MODELS = m_before;
}

void ServedCatalogue::serve(const QString& key, const QByteArray& content) const {
    m_nginx.serve(QLatin1Char('/') + modelInfo(key).file, content);
}

}  // namespace sayloft::test
