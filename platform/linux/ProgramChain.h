// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class QProcess;

namespace sayloft {

/// Opens programs for the user, one instead of another that does not work. What has been opened
/// stays open when this object goes. Main thread; nothing waits.
class ProgramChain : public QObject {
public:
    using Commands = std::vector<QStringList>;  ///< programs with their arguments

    ProgramChain() = default;
    ~ProgramChain() override;
    ProgramChain(const ProgramChain&) = delete;
    ProgramChain& operator=(const ProgramChain&) = delete;

    /// Starts one after the other until one neither fails to start nor fails within some seconds.
    /// Calls `noneWorks` when there is none.
    void open(const Commands& commands, const std::function<void()>& noneWorks);

private:
    struct Attempt;

    void start(const std::shared_ptr<Attempt>& attempt);
};

}  // namespace sayloft
