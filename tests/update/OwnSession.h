#pragma once

#include "session/UpdateSession.h"
#include "tests/common/OwnLockFile.h"
#include "tests/common/RecordingReporter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

/// A session with a lock that nothing else uses.
class OwnSession
{
public:
    OwnSession() { reset(); }

    UpdateSession &operator*() { return *m_session; }
    UpdateSession *operator->() { return m_session.get(); }
    /// Creates a new session, because a blocked one cannot start another update.
    void reset() { m_session = std::make_unique<UpdateSession>(m_lock); }
    /// Begins an update.
    void begin() { EXPECT_TRUE(m_session->begin(UpdateStage::Fetching, m_reporter)); }

private:
    QTemporaryDir m_folder;
    RecordingReporter m_reporter;
    UpdateLock m_lock{ownLockFile(m_folder)};
    std::unique_ptr<UpdateSession> m_session;
};
