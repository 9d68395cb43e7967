#pragma once

#include <QObject>
#include <QTimer>

#include <cstdint>
#include <string>

class KlipraMac;

/// Lets a deletion be heard before it is made: the cutter writes what it would leave to a temporary
/// file, and the join is played from there. The engine stays as it is.
class Audition : public QObject {
public:
    static constexpr double kSecondsAround = 2.0; ///< on each side of the join

    Audition();
    Audition(const Audition&) = delete;
    Audition& operator=(const Audition&) = delete;
    ~Audition() override;

    /// Plays the join of the range that the engine's cut positions name, both of which are set.
    /// Nothing else of the engine plays meanwhile.
    /// @return false when it could not be cut, see Klipra::GetLastFailure, or not be opened
    [[nodiscard]] bool Play(KlipraMac& engine);
    /// @return whether something was playing
    bool Stop();

private:
    void StopAtEnd();

    std::string m_path;
    std::uint32_t m_stream = 0;
    unsigned long long m_end = 0; // where to stop, bytes
    QTimer m_timer;
};
