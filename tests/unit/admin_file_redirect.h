// Test support: the unit tests' own stand-in for the file system's command file. Opening
// "/_admin/Manage_QUILL/files.cmd" from inside the test binary opens a temporary file instead,
// in append mode so that the file keeps every request in order after the reply placed at its
// start; manage.cmd can be redirected alike. Any other "/_admin" path fails with ENOENT, so no test
// reaches the real one.
#pragma once

// path: the file to open in place of files.cmd, or null to make opening it fail with ENOENT.
void redirectFilesCommandFile(const char *path);

// The same for "/_admin/Manage_QUILL/manage.cmd" (which otherwise fails with ENOENT too).
void redirectManageCommandFile(const char *path);

// Makes the next dup2 onto descriptor 0 fail with EBADF.
void failNextStdinRedirect();
