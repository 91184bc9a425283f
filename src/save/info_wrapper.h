// Cutting the reply wrapper out of an info file's text, moving as little of the text as it can.
#pragma once

// Cuts the reply wrapper out of text[0, *length) and gives the same text as
// stripReplyWrapper: "<quillReply>", then "</quillReply>", each with the character after
// it, then "<result value=" through the next "</result>" and the character after that, each
// searched for in what the earlier cuts left. The text is moved into one piece at the end,
// moving the smaller parts; returns its start, terminated, with its length in *length.
char *stripInfoWrapper(char *text, int *length);
