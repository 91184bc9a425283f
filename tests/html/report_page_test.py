#!/usr/bin/env python3
"""The --html page of trovanctl report in a real browser (headless Chromium).

Writes a document with ordinary and hostile names, makes its page with trovanctl, and opens
it inside a harness page that drives it as a person would: the tree's first level is shown,
a node is expanded, a path is selected (its effective rights appear), a search finds a path
and a user, and the hostile names stay text. Chromium prints the harness's DOM (--dump-dom)
once its steps have run; the facts it gathered are compared with the expected ones. A
screenshot of the page after the same steps is kept in the output folder.

Usage: report_page_test.py TROVANCTL CHROMIUM OUTPUT_DIR
"""
import json
import os
import re
import subprocess
import sys
import tempfile

HOSTILE_USER = '</script><script>parent.INJECTED=1</script>'
HOSTILE_PATH = '/data/<script>parent.INJECTED=2;'
IMG_PATH = '/data/<img src=x onerror="parent.INJECTED=3">'


def xml_text(text):
    return text.replace('&', '&amp;').replace('<', '&lt;').replace('>', '&gt;')


def trustee(name, rights, sid=None):
    elements = ''.join('<%s/>' % r for r in rights)
    if sid:
        return ('<trustee type="adID"><name>%s</name><id>%s</id><rights value="">%s</rights>'
                '</trustee>' % (xml_text(name), sid, elements))
    return ('<trustee><name>%s</name><id></id><rights value="">%s</rights></trustee>'
            % (xml_text(name), elements))


def irf(rights):
    return ('<inheritedRightsFilter value="">%s</inheritedRightsFilter>'
            % ''.join('<%s/>' % r for r in rights))


def document():
    files = [
        ('/', trustee('admin.corp.TREE.', ['supervisor'])),
        ('/data', trustee('staff.corp.TREE.', ['read', 'write', 'create', 'erase', 'fileScan'])),
        ('/data/finance', irf(['read', 'fileScan']) +
         trustee('Ann "Q" & Co – ü', ['read', 'write'], 'S-1-5-21-1-2-3-1104')),
        ('/data/finance/2026', irf([])),
        ('/data/finance/2026/q1', trustee('bob.corp.TREE.', ['read', 'write', 'fileScan'])),
        (HOSTILE_PATH, trustee(HOSTILE_USER, ['read'])),
        (IMG_PATH, irf(['read'])),
    ]
    body = ''.join('<file><zid>1</zid><path>%s</path>%s</file>\n' % (xml_text(p), inside)
                   for p, inside in files)
    return ('<metadata>\n<trusteeInfo>\n%s</trusteeInfo>\n<userInfo>\n'
            '<user><id></id><spaceUsed>0</spaceUsed><quotaAmount>1000</quotaAmount>'
            '<name>bob.corp.TREE.</name></user>\n</userInfo>\n<dirInfo>\n'
            '<directory><zid>2</zid><path>\\data\\finance</path><spaceUsed>0</spaceUsed>'
            '<quotaAmount>77</quotaAmount></directory>\n</dirInfo>\n</metadata>\n' % body)


HARNESS = r'''<!DOCTYPE html>
<html><head><meta charset="utf-8"><style>body{margin:0} iframe{border:0;width:100%%;height:780px}</style></head>
<body><iframe id="page" src="page.html"></iframe><pre id="facts"></pre>
<script>
const facts = {};
const wait = (ms) => new Promise((done) => setTimeout(done, ms));
const texts = (list) => [...list].map((e) => e.textContent);
document.getElementById("page").addEventListener("load", async () => {
  const frame = document.getElementById("page"), d = frame.contentDocument;
  const item = (path) => d.querySelector('li.node[data-path="' + CSS.escape(path) + '"]');
  facts.firstLevel = texts(d.querySelectorAll('#tree > li > ul > li > .row > .name'));
  facts.financeBeforeExpand = item("/data/finance") !== null;
  item("/data").querySelector(".toggle").click();
  facts.dataChildren = texts(item("/data").querySelectorAll(":scope > ul > li > .row > .name"));
  facts.financeSummary = texts(item("/data/finance").querySelectorAll(":scope > .row > .summary > span"));
  item("/data/finance").querySelector(".name").click();
  facts.effectivePath = d.getElementById("effective").getAttribute("data-path");
  facts.effectiveNote = d.querySelector("#effective .note").textContent;
  facts.effectiveRows = [...d.querySelectorAll("#effective tr")].slice(1).map((r) => texts(r.children));
  item("/data").querySelector(".toggle").click();
  facts.collapsed = item("/data/finance") === null;
  const search = d.getElementById("search");
  search.value = "Q1";
  search.dispatchEvent(new Event("input"));
  await wait(400);
  facts.searchQ1 = texts(d.querySelectorAll("#results button"));
  d.querySelector("#results button.path").click();
  facts.revealedSelected = item("/data/finance/2026/q1").classList.contains("selected");
  facts.q1Effective = [...d.querySelectorAll("#effective tr")].slice(1).map((r) => texts(r.children));
  search.value = "co \u2013";
  search.dispatchEvent(new Event("input"));
  await wait(400);
  facts.searchUser = texts(d.querySelectorAll("#results button"));
  d.querySelector("#results button.user").click();
  facts.userDetail = d.getElementById("userDetail").getAttribute("data-user");
  facts.userRows = [...d.querySelectorAll("#userDetail tr")].slice(1).map((r) => texts(r.children));
  facts.hostileNames = texts(item("/data").querySelectorAll(":scope > ul > li > .row > .name"));
  facts.hostileTrustee = texts(d.querySelectorAll('#tree .trustee'));
  facts.scripts = d.querySelectorAll("script").length;
  facts.images = d.querySelectorAll("img").length;
  facts.injected = window.INJECTED === undefined ? "no" : String(window.INJECTED);
  facts.rendered = d.body.hasAttribute("data-rendered-ms");
  document.getElementById("facts").textContent = JSON.stringify(facts);
  if (location.hash === "#shot") document.getElementById("facts").remove();
});
</script></body></html>
'''

EXPECTED = {
    'firstLevel': ['data'],
    'financeBeforeExpand': False,
    'dataChildren': ['<img src=x onerror="parent.INJECTED=3">',
                     '<script>parent.INJECTED=2;', 'finance'],
    'financeSummary': ['S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü): rw', 'filter: rf', 'quota: 77'],
    'effectivePath': '/data/finance',
    'effectiveNote': 'note: effective rights come from trustee assignments and inherited rights '
                     'filters only; group membership and security equivalence are not counted',
    'effectiveRows': [['S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)', 'ad', 'rw', '/data/finance'],
                      ['admin.corp.TREE.', 'arbor', 'rwceafmsvx', '/'],
                      ['staff.corp.TREE.', 'arbor', 'rf', '/data']],
    'collapsed': True,
    'searchQ1': ['/data/finance/2026/q1'],
    'revealedSelected': True,
    'q1Effective': [['admin.corp.TREE.', 'arbor', 'rwceafmsvx', '/'],
                    ['bob.corp.TREE.', 'arbor', 'rwf', '/data/finance/2026/q1']],
    'searchUser': ['user: S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)'],
    'userDetail': 'S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü)',
    'userRows': [['/data/finance', 'rw']],
    'hostileNames': ['<img src=x onerror="parent.INJECTED=3">',
                     '<script>parent.INJECTED=2;', 'finance'],
    'hostileTrustee': ['admin.corp.TREE.: s', 'staff.corp.TREE.: rwcef',
                       HOSTILE_USER + ': r', 'S-1-5-21-1-2-3-1104 (Ann "Q" & Co – ü): rw',
                       'bob.corp.TREE.: rwf'],
    'scripts': 2,
    'images': 0,
    'injected': 'no',
    'rendered': True,
}


def chromium(binary, profile, *arguments):
    command = [binary, '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic',
               '--no-first-run', '--disable-background-networking',
               '--disable-component-update', '--disable-sync', '--user-data-dir=' + profile,
               '--allow-file-access-from-files', '--virtual-time-budget=10000', *arguments]
    return subprocess.run(command, capture_output=True, text=True, timeout=60)


def main():
    trovanctl, browser, out = sys.argv[1:4]
    os.makedirs(out, exist_ok=True)
    with open(os.path.join(out, 'doc.xml'), 'w', encoding='utf-8') as f:
        f.write(document())
    subprocess.run([trovanctl, 'report', os.path.join(out, 'doc.xml'), '--html',
                    os.path.join(out, 'page.html')], check=True)
    harness = os.path.join(out, 'harness.html')
    with open(harness, 'w', encoding='utf-8') as f:
        f.write(HARNESS % ())
    with tempfile.TemporaryDirectory() as profile:
        run = chromium(browser, profile, '--dump-dom', 'file://' + harness)
        found = re.search(r'<pre id="facts">(.*?)</pre>', run.stdout, re.S)
        if not found or not found.group(1):
            print('no facts from the page; chromium said:\n' + run.stderr[-3000:])
            return 1
        import html
        facts = json.loads(html.unescape(found.group(1)))
    with tempfile.TemporaryDirectory() as profile:
        chromium(browser, profile, '--window-size=1200,800',
                 '--screenshot=' + os.path.join(out, 'report_page.png'),
                 'file://' + harness + '#shot')
    failed = 0
    for name, want in EXPECTED.items():
        if facts.get(name) != want:
            failed += 1
            print('%s:\n  expected %r\n  actual   %r' % (name, want, facts.get(name)))
    print('%d passed, %d failed' % (len(EXPECTED) - failed, failed))
    return 1 if failed else 0


if __name__ == '__main__':
    sys.exit(main())
