// SPDX-License-Identifier: MIT
#pragma once

#include "models/ModelCatalogue.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace sayloft::test {

class Nginx;

/// While it lives, models are downloaded from a server of the test and not from their real host.
class ServedCatalogue {
public:
    explicit ServedCatalogue(const Nginx& nginx);
    ~ServedCatalogue();
    ServedCatalogue(const ServedCatalogue&) = delete;
    ServedCatalogue& operator=(const ServedCatalogue&) = delete;

    /// Until then a model is not there.
    void serve(const QString& key, const QByteArray& content) const;

private:
    const Nginx& m_nginx;
    const std::vector<ModelInfo> m_before;
};

}  // namespace sayloft::test
