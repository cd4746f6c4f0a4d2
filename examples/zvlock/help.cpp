#include "examples/zvlock/help.h"

namespace zorvel {
namespace zvlock {

const char* const description = "Runs a command while it holds a lock on a directory, or lists the directory's locks.";

const char* const usage = R"(Usage:
  zvlock [--read|--write|--exclusive] [--timeout SECONDS] DIRECTORY -- COMMAND [ARGUMENT...]
  zvlock --status DIRECTORY
)";

const char* const explanation = R"(Examples:
  zvlock /srv/site -- ./deploy "release 7"
  zvlock --read --timeout 10 /srv/site -- ./check-links /srv/site
  zvlock --status /srv/site

Kinds of lock:
  --read and --write belong together: many readers at a time, or one writer.
  Readers that come while a writer waits are let in before it.
  --exclusive is a lock of its own: one holder at a time, roughly in the order in
  which they came.
  Do not mix --exclusive with --read or --write on one directory. The guard under
  which readers and writers come in is the exclusive lock, so its holder keeps
  them out; but a reader or writer that is in already does not keep an exclusive
  holder out.

Waiting:
  SECONDS may have a fraction. Below 1 they count as 1 for --read and --write.
  For --exclusive, 0 takes a free directory and waits for nobody.
  A signal that comes while zvlock waits ends it; the command is not run.

The command:
  It has zvlock's standard streams, and gets its arguments as they are. SIGHUP,
  SIGINT, SIGQUIT, SIGTERM, SIGUSR1 and SIGUSR2 are passed on to it; what a
  terminal or console sends reaches it anyhow. The lock is released when the
  command has ended; what it left running in the background does not hold it.
  The lock is a file in the directory, .deploy_...: the command must let it be.
  Windows: a batch file is run by "cmd /c FILE".

Exit status:
  the command's own, and
  124      the lock was not acquired in time (or 1024 others wait for it)
  125      zvlock failed: bad options, or the directory cannot be locked
  126      the command cannot be executed
  127      the command was not found
  128 + N  signal N ended the command, or zvlock while it waited
  --status ends with 0, also when there are no lock files, or with 125.

Status:
  One line for each lock file. KIND: exclusive (the holder), queued (for the
  exclusive lock), writer, reader. NUMBER: the level, or the number in a reader's
  name. AGE: since it was last refreshed, by the clock of the file server. STATE:
  whether a lock would take it for that of a dead process (stale: not refreshed
  for 30 seconds). A reader or writer that waits has no line of its own: it takes
  the exclusive lock for a moment each time it looks, and queues for it. The
  directory must be writable: the server's clock is read from a file made for
  that moment.

When zvlock itself is killed:
  Its lock file stays, and others take over 30 seconds later. Linux: the command
  gets SIGTERM then, but not what it started in turn. Windows: the command is
  killed, with all it started. A zvlock that is stopped (Ctrl-Z) or suspended for
  longer than 30 seconds has lost its lock without being told.)";

}  // namespace zvlock
}  // namespace zorvel
