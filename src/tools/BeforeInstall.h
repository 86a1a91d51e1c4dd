#pragma once

class InstallSession;

/// What `kvpk install` looks at ahead of the first change.

/// Tells on stderr what would go wrong in the run; whether it may begin all the same. With `force`
/// it may, whatever is found.
bool IsSound(InstallSession& session, bool force);

/// Whether the user wants what the scripts would do outside the game directory: true if there is no
/// such thing, or `trust`. Otherwise it is listed on stderr, and who sits at a terminal is asked.
bool IsTrusted(InstallSession& session, bool trust);
