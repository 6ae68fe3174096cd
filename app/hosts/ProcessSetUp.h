#pragma once

// Makes a host's process independent of how it was started.

// The first thing that a host's main calls, before anything opens a file. Gives closed standard descriptors
// to /dev/null; lets a write to a closed pipe or beyond a limit on files fail instead of ending the process;
// and lets children be waited for although the parent process ignored the end of its own.
void SetUpProcess();
