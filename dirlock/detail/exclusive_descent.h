#pragma once

#include <zorvel/dirlock.h>

/// The way of one queued process down the levels, from its own level to level
/// 0. It owns the file of its level; for the moment of a step down it owns the
/// one below as well.
class ZORVEL_LOCAL zvDirectoryExclusiveLock::Descent
{
public:
    /// `level` is 1 or more, its file made by this process.
    Descent(zvDirectoryExclusiveLock& lock, const boost::posix_time::ptime& deadline, int level);

    /// Descends until level 0 is taken or the deadline comes, and returns the
    /// level reached, whose file is still this process's. On an exception no
    /// file stays; one of the lock family leaves as zvFileBasedLockError
    /// itself, any other as it is.
    int run();

private:
    enum class Verdict
    {
        fresh,
        stale,
        vanished,
    };

    bool step();
    void keepFresh();
    Verdict judgeLower();
    bool takeOverStale();
    void stepDown(int removalTag);
    bool deadlineHasCome() const;
    void pause() const;
    void abandonOrThrow() const;
    void abandon() const;
    void abandonQuietly() const;

    int lower() const { return m_level - 1; }

    zvDirectoryExclusiveLock& m_lock;
    const boost::posix_time::ptime m_deadline;
    int m_level;
    /// The name of the file of the level below: each pass asks for it.
    std::string m_lowerName;
    /// Whether the file of the level below is this process's too.
    bool m_ownsLower;
    boost::posix_time::ptime m_lastTouch;
};
