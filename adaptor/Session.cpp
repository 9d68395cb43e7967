#include "adaptor/Session.h"

#include "platform/FileReplacement.h"
#include "platform/SyncFiles.h"

namespace {

// Files with this process's id were left by a dead one, unless its lock is held: by one that is in
// another container.
LockFile LockTemporaryFiles(const TemporaryFiles& temporary) {
    LockFile lock(temporary.LockPath());
    if (lock.IsLocked()) {
        temporary.DeleteAll();
    }
    return lock;
}

} // namespace

Session::Session(const std::string& folder, const std::string& path,
                 const TemporaryFiles& temporary)
    : m_openedFile(StateOf(path.c_str())),
      m_findings(SessionJournal::LookAround(folder, m_openedFile)), m_journal(folder),
      m_lock(LockTemporaryFiles(temporary)),
      m_sweep([folder, path, temporary, dead = m_findings.deadProcesses,
               living = m_findings.livingProcesses] {
          temporary.DeleteThoseOfTheDead(dead, living);
          for (const std::string& swept : {temporary.Folder(), FolderOf(path), folder}) {
              FileReplacement::RemoveAbandoned(swept);
          }
      }) {
}

Session::~Session() {
    m_sweep.Wait();
    m_lock.Remove();
}
