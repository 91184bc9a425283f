#!/usr/bin/env python3
"""trovanctl report on a generated Metadata document of ENTRIES entries (default 1,000,000),
side by side with xmllint --stream --noout of the same document, in one run.

For each command: processor time (user + system) and wall time, the median of RUNS runs, and the
peak resident set; then the ratios to xmllint. Then the first render of the --html page in
headless Chromium (the page's own clock, from navigation start to the tree shown).

Usage: report_bench.py TROVANCTL CHROMIUM [ENTRIES] [RUNS]
"""
import os
import re
import resource
import statistics
import subprocess
import sys
import tempfile
import time


def generate(path, entries):
    """A volume of nested directories: a filter on every 10th directory, trustees of 20,000
    Arbor and 5,000 AD users, user and directory quotas; `entries` entries in all."""
    users = 25000
    quotas = min(users, entries // 20)
    dir_quotas = entries // 20
    trustee_entries = entries - quotas - dir_quotas
    out = open(path, 'w', encoding='utf-8')
    out.write('<metadata>\n<trusteeInfo>\n')
    written = 0
    n = 0
    while written < trustee_entries:
        a, b, c = n // 10000, (n // 100) % 100, n % 100
        p = '/dept%03d/team%02d/f%02d.dat' % (a, b, c) if c else '/dept%03d/team%02d' % (a, b)
        parts = ['<file><zid>%d</zid><path><![CDATA[%s]]></path>\n' % (n, p)]
        u = (n * 7919) % users
        if u < 20000:
            parts.append('<trustee><name>u%05d.corp.TREE.</name><id></id><rights value="RF">'
                         '<read/><fileScan/></rights></trustee>\n' % u)
        else:
            parts.append('<trustee type="adID"><name>Ad &amp; user %d</name><id>S-1-5-21-9-%d'
                         '</id><rights value="RW"><read/><write/></rights></trustee>\n' % (u, u))
        written += 1
        if n % 10 == 0 and written < trustee_entries:
            parts.append('<inheritedRightsFilter value="RF"><read/><fileScan/>'
                         '</inheritedRightsFilter>\n')
            written += 1
        parts.append('</file>\n')
        out.write(''.join(parts))
        n += 1
    out.write('</trusteeInfo>\n<userInfo>\n')
    for u in range(quotas):
        out.write('<user><id></id><spaceUsed>0</spaceUsed><quotaAmount>%d</quotaAmount>'
                  '<name>u%05d.corp.TREE.</name></user>\n' % (1000 + u, u))
    out.write('</userInfo>\n<dirInfo>\n')
    for d in range(dir_quotas):
        out.write('<directory><zid>%d</zid><path>\\dept%03d\\q%05d</path><spaceUsed>0</spaceUsed>'
                  '<quotaAmount>%d</quotaAmount></directory>\n' % (d, d % 1000, d, 500 + d))
    out.write('</dirInfo>\n</metadata>\n')
    out.close()


def measure(command):
    """(processor seconds, wall seconds, peak RSS in KiB) of one run, output to /dev/null."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.monotonic()
    pid = os.fork()
    if pid == 0:
        fd = os.open(os.devnull, os.O_WRONLY)
        os.dup2(fd, 1)
        os.dup2(fd, 2)
        os.execvp(command[0], command)
    _, status, usage = os.wait4(pid, 0)
    wall = time.monotonic() - start
    if status != 0:
        sys.exit('failed: %s (status %d)' % (' '.join(command), status))
    del before
    return usage.ru_utime + usage.ru_stime, wall, usage.ru_maxrss


def main():
    trovanctl, chromium = sys.argv[1:3]
    entries = int(sys.argv[3]) if len(sys.argv) > 3 else 1000000
    runs = int(sys.argv[4]) if len(sys.argv) > 4 else 3
    work = tempfile.mkdtemp()
    doc = os.path.join(work, 'doc.xml')
    generate(doc, entries)
    print('document: %d entries, %.0f MB' % (entries, os.path.getsize(doc) / 1e6))
    commands = {
        'xmllint --stream --noout': ['xmllint', '--stream', '--noout', doc],
        'report --by user --format csv': [trovanctl, 'report', doc, '--by', 'user', '--format',
                                          'csv'],
        'report --effective-all --format csv': [trovanctl, 'report', doc, '--effective-all',
                                                '--format', 'csv'],
        'report --html': [trovanctl, 'report', doc, '--html', os.path.join(work, 'page.html')],
    }
    results = {name: [] for name in commands}
    for _ in range(runs):  # interleaved, so that load falls on all alike
        for name, command in commands.items():
            results[name].append(measure(command))
    base_cpu = statistics.median(r[0] for r in results['xmllint --stream --noout'])
    base_wall = statistics.median(r[1] for r in results['xmllint --stream --noout'])
    print('%-38s %9s %9s %9s %9s %10s' % ('command', 'cpu s', 'wall s', 'cpu x', 'wall x',
                                          'peak MiB'))
    for name, rows in results.items():
        cpu = statistics.median(r[0] for r in rows)
        wall = statistics.median(r[1] for r in rows)
        peak = max(r[2] for r in rows) / 1024
        print('%-38s %9.2f %9.2f %9.2f %9.2f %10.0f' % (name, cpu, wall, cpu / base_cpu,
                                                        wall / base_wall, peak))
    page = os.path.join(work, 'page.html')
    print('page: %.0f MB' % (os.path.getsize(page) / 1e6))
    for _ in range(runs):
        with tempfile.TemporaryDirectory() as profile:
            start = time.monotonic()
            run = subprocess.run(
                [chromium, '--headless', '--no-sandbox', '--disable-gpu', '--disable-quic',
                 '--no-first-run', '--disable-background-networking',
                 '--disable-component-update', '--disable-sync', '--user-data-dir=' + profile,
                 '--dump-dom', 'file://' + page], capture_output=True, text=True, timeout=300)
            wall = time.monotonic() - start
            usage = resource.getrusage(resource.RUSAGE_CHILDREN)
        found = re.search(r'data-rendered-ms="(\d+)"', run.stdout[:4096])
        print('html first render in chromium: %s ms (page clock); chromium run %.2f s wall; '
              'largest process peak so far %.0f MiB'
              % (found.group(1) if found else '?', wall, usage.ru_maxrss / 1024))
    os.remove(doc)
    os.remove(page)
    os.rmdir(work)


if __name__ == '__main__':
    main()
