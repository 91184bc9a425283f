// Fields of a legacy report line: double-quoted texts separated by a comma that is directly
// followed by a double quotation mark ("TRUSTEE","VOL1:\HOME","x","JDOE","RWF").
#pragma once

// The raw text of the next field, quotes included, or null when nothing is left. A first call
// passes the line; later calls pass null and go on from *cursor. The separator found is
// overwritten with NUL in place, and *cursor is left at the quotation mark after it, or at the
// text's terminating NUL.
char *splitAtQuotedComma(char *text, char separator, char **cursor);

// The next field without its first and last characters (its quotes, which are not checked), or
// null when the raw field is missing or shorter than 2 characters. Changes the line in place.
char *nextQuotedField(char *line, char separator, char **cursor);
