#!/usr/bin/env python3
"""generate_documents.py SEED COUNT DIR: COUNT random Metadata documents, DIR/doc000.xml on.

One seed gives the same documents on every run. Each document is well-formed XML in the form
trovan save writes, with what makes trovan restore's reading hard: Arbor and AD trustees (the
AD marker also in single quotes, which trovan reads as an Arbor trustee), filters, user and
directory quotas, names and paths with '&', '<', quotes and non-ASCII letters (as entities,
character references and CDATA), values at and just past the lengths trovan reads, and
elements that trovan's lenient reader takes otherwise than an XML parser (comments, spaces
in tags, empty-element tags, elements out of order, unknown elements, a CDATA section split
around "]]>"). Every path of document N starts with /gN/ so that a request names its document.
"""
import os
import random
import sys

RIGHTS = ["read", "write", "create", "erase", "accessControl", "fileScan", "modify",
          "supervisor", "salvage", "secure"]
LETTERS = "RWCEAFMSVX"
WORDS = ["a&b", "l<t", 'say "hi"', "it's", "caf\u00e9", "\u00fcber", "\u65e5\u672c", "x>y",
         "plain", "sp ace", "semi;colon", "per%cent", "back\\slash", "a]]b", "tab\tbed"]
# A name trovan reads into 1,024 bytes holds at most 1,023; the identifier 189; a quota 63.
NAME_LIMIT, ID_LIMIT, QUOTA_LIMIT, RIGHTS_LIMIT = 1023, 189, 63, 511


def escape(text, quote=False):
    text = text.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
    return text.replace('"', "&quot;") if quote else text


def char_refs(text):
    return "".join("&#%d;" % ord(c) if c in "&<'\"" else c for c in text)


class Document:
    def __init__(self, rng, number):
        self.rng = rng
        self.number = number
        self.lines = []

    def text(self, value):
        """A text element's content in one of the forms a save or a hand could write."""
        form = self.rng.random()
        if form < 0.4 and "]]>" not in value:
            return "<![CDATA[" + value + "]]>"
        if form < 0.5:
            return char_refs(value)
        return escape(value, quote=form < 0.6)

    def word(self):
        return self.rng.choice(WORDS)

    def path(self, separator="/", long_share=0.05):
        parts = ["g%d" % self.number] + [self.word() for _ in range(self.rng.randint(0, 3))]
        if self.rng.random() < long_share:
            # Near trovan's 4,096 bytes for the mount point and the path together (a mount
            # point of up to 60 bytes or so keeps the shorter two within them).
            parts.append("p" * self.rng.choice([3900, 3990, 4090]))
        return separator + separator.join(parts)

    def name(self):
        roll = self.rng.random()
        if roll < 0.05:
            return "n" * self.rng.choice([NAME_LIMIT - 1, NAME_LIMIT, NAME_LIMIT + 1])
        base = self.word() if roll < 0.5 else "user%d" % self.rng.randint(0, 9)
        return base + ".staff.corp.TREE."

    def sid(self):
        if self.rng.random() < 0.05:
            return "S-1-5-21-" + "9" * (self.rng.choice([ID_LIMIT, ID_LIMIT + 1]) - 9)
        return "S-1-5-21-%d-%d" % (self.rng.randint(0, 99), self.rng.randint(1000, 1010))

    def rights(self, element, attributes=""):
        chosen = [r for r in RIGHTS if self.rng.random() < 0.4]
        value = "".join(LETTERS[RIGHTS.index(r)] for r in chosen)
        inner = "".join(self.rng.choice(["<%s/>", "<%s />", "<%s></%s>"]).replace("%s", r)
                        for r in chosen)
        if self.rng.random() < 0.03:
            # A run of rights elements near trovan's 512 bytes.
            inner = "<read/>" * self.rng.choice([RIGHTS_LIMIT // 7, RIGHTS_LIMIT // 7 + 1])
        if self.rng.random() < 0.05:
            inner += "<notARight/>"
        if self.rng.random() < 0.1:
            return "<%s%s/>" % (element, attributes)
        return '<%s%s value="%s">%s</%s>' % (element, attributes, value, inner, element)

    def trustee(self):
        roll = self.rng.random()
        rights = self.rights("rights")
        if roll < 0.3:
            marker = self.rng.choice([' type="adID"', " type='adID'", ' type = "adID"'])
            name = self.text(self.word()) if self.rng.random() < 0.7 else ""
            parts = ["<name>%s</name>" % name, "<id>%s</id>" % self.text(self.sid()), rights]
        else:
            marker = ""
            parts = ["<name>%s</name>" % self.text(self.name()), "<id></id>", rights]
        if self.rng.random() < 0.1:
            self.rng.shuffle(parts)
        if self.rng.random() < 0.05:
            parts.insert(1, "<!-- a note -->")
        if self.rng.random() < 0.05:
            parts.insert(0, "<unknown>x</unknown>")
        return "<trustee%s>%s</trustee>" % (marker, "".join(parts))

    def file(self):
        path = self.path()
        if "]]>" not in path and self.rng.random() < 0.05:
            cut = self.rng.randint(1, len(path) - 1)
            text = "<![CDATA[%s]]><![CDATA[%s]]>" % (path[:cut], path[cut:])
        else:
            text = self.text(path)
        self.lines.append("<file><zid>%d</zid><path>%s</path>" % (self.rng.randint(1, 10 ** 9), text))
        for _ in range(self.rng.randint(0, 3)):
            self.lines.append(self.trustee())
        if self.rng.random() < 0.3:
            self.lines.append(self.rights("inheritedRightsFilter"))
        self.lines.append("</file>")

    def user(self):
        ad = self.rng.random() < 0.3
        marker = self.rng.choice([' type="adID"', " type='adID'"]) if ad else ""
        name = self.word() if ad else self.name()
        self.lines.append("<user%s><id></id><spaceUsed>%d</spaceUsed><quotaAmount>%s</quotaAmount>"
                          "<name>%s</name></user>" % (marker, self.rng.randint(0, 99),
                                                      self.amount(), self.text(name)))

    def amount(self):
        roll = self.rng.random()
        if roll < 0.1:
            return "9223372036854775807"
        if roll < 0.15:
            return "1" * self.rng.choice([QUOTA_LIMIT, QUOTA_LIMIT + 1])
        return str(self.rng.randint(0, 10 ** 12))

    def directory(self):
        path = self.path("\\", 0.15)
        self.lines.append("<directory><zid>%d</zid><path>%s</path><spaceUsed>0</spaceUsed>"
                          "<quotaAmount>%s</quotaAmount></directory>"
                          % (self.rng.randint(1, 10 ** 9), self.text(path), self.amount()))

    def build(self):
        self.lines.append("<metadata>")
        sections = [("trusteeInfo", self.file, 6), ("userInfo", self.user, 3),
                    ("dirInfo", self.directory, 3)]
        for element, entry, most in sections:
            if self.rng.random() < 0.1:
                continue
            self.lines.append("<%s>" % element)
            for _ in range(self.rng.randint(0, most)):
                entry()
            self.lines.append("</%s>" % element)
        self.lines.append("</metadata>")
        return "\n".join(self.lines) + "\n"


def main():
    if len(sys.argv) != 4:
        sys.exit("usage: generate_documents.py SEED COUNT DIR")
    seed, count, folder = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
    os.makedirs(folder, exist_ok=True)
    for number in range(count):
        document = Document(random.Random(seed * 100003 + number), number).build()
        with open(os.path.join(folder, "doc%03d.xml" % number), "w", encoding="utf-8") as out:
            out.write(document)


if __name__ == "__main__":
    main()
