#pragma once

#include <QObject>
#include <QString>

#include <vector>

namespace corvandi {

/// The faces of the HUD.
enum class HUDState { recording, processing, notice, error };

/// What the HUD shows. Observable: `changed` follows every change of a field (the setters of fields
/// that are set to their present value notify as well; whoever wants to spare that compares first).
///
/// Thread: main thread only.
class HUDModel : public QObject {
    Q_OBJECT

public:
    static constexpr size_t barCount = 28;
    static constexpr double restingBar = 0.05;

    /// Heights of the level bars, 0...1, oldest first.
    [[nodiscard]] const std::vector<double>& bars() const { return bars_; }
    /// Recording time as minutes:seconds.
    [[nodiscard]] const QString& elapsed() const { return elapsed_; }
    /// The line of the processing, notice and error faces.
    [[nodiscard]] const QString& statusText() const { return statusText_; }
    [[nodiscard]] HUDState state() const { return state_; }

    void setBars(std::vector<double> bars);
    void setElapsed(const QString& elapsed);
    void setStatusText(const QString& text);
    void setState(HUDState state);

Q_SIGNALS:
    void changed();

private:
    std::vector<double> bars_ = std::vector<double>(barCount, restingBar);
    QString elapsed_ = QStringLiteral("0:00");
    QString statusText_;
    HUDState state_ = HUDState::processing;
};

} // namespace corvandi
