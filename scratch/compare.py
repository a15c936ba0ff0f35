import sys, os, json, csv, io, subprocess, collections, re
old, new, projects = sys.argv[1:]
def corpora():
    for p in ['/work/shared/corpus/lua/app.prj', '/work/shared/corpus/littlefs/app.prj',
              '/work/main/examples/lua/app.prj', '/work/main/examples/firmware/app.prj']:
        yield p, []
        d = os.path.dirname(p)
        for f in sorted(os.listdir(d)):
            if f.endswith(('.txt', '.siz')) and f != 'README.txt':
                yield p, ['--load', os.path.join(d, f)]
    for p in sys.stdin if False else []: yield p
def generated():
    for d in sorted(os.listdir(projects)):
        p = os.path.join(projects, d, 'app.prj')
        if os.path.exists(p):
            yield p, []
            if os.path.exists(os.path.join(projects, d, 'limits.txt')):
                yield p, ['--load', os.path.join(projects, d, 'limits.txt')]
def run(program, form, project, more):
    r = subprocess.run([program, 'analyze', '--codepage', 'utf-8', '--data', '/work/proof14/dat', '--format', form, *more, project],
                       stdin=subprocess.DEVNULL, capture_output=True)
    return r.returncode, r.stdout, r.stderr
counts = collections.Counter(); keys = collections.Counter(); added = set(); examples = {}
def note(what, project):
    counts[what] += 1
    examples.setdefault(what, project)
def differ(a, b, path, project):
    if isinstance(a, dict) and isinstance(b, dict):
        for k in a:
            if k not in b: note('json key gone: ' + path + '.' + k, project)
            else: differ(a[k], b[k], path + '.' + k, project)
        for k in b:
            if k not in a: added.add(path + '.' + k)
    elif isinstance(a, list) and isinstance(b, list) and path in ('.functions', '.warnings', '.groups') :
        if len(a) != len(b): note('json length: ' + path, project)
        for x, y in zip(a, b): differ(x, y, path, project)
    elif a != b:
        note('json value: ' + path + (' %s -> %s' % (a, b) if path.endswith(('complete', 'schema')) else ''), project)
n = 0
for group, items in (('corpora', corpora()), ('generated', generated())):
    for project, more in items:
        counts[group + ' runs'] += 1
        so, oo, eo = run(old, 'json', project, more); sn, on, en = run(new, 'json', project, more)
        if so != sn: note('status %d -> %d' % (so, sn), project)
        if oo and on: differ(json.loads(oo), json.loads(on), '', project)
        en2 = b''.join(l for l in en.splitlines(True) if not l.startswith(b'note: '))
        eo2 = b''.join(l for l in eo.splitlines(True) if not l.startswith(b'note: '))
        note('stderr same' if eo == en else 'stderr same but for notes' if eo2 == en2 else 'stderr differs', project)
        so, oo, eo = run(old, 'csv', project, more); sn, on, en = run(new, 'csv', project, more)
        a = list(csv.reader(io.StringIO(oo.decode()))); b = list(csv.reader(io.StringIO(on.decode())))
        if len(a) != len(b): note('csv length', project)
        if a and b:
            for i, name in enumerate(a[0]):
                if name not in b[0]: note('csv column gone: ' + name, project); continue
                j = b[0].index(name)
                for x, y in zip(a[1:], b[1:]):
                    if x[i] != y[j]: note('csv value: ' + name, project)
            for name in b[0]:
                if name not in a[0]: added.add('csv ' + name)
        so, oo, eo = run(old, 'text', project, more); sn, on, en = run(new, 'text', project, more)
        a, b = oo.decode(), on.decode()
        note('text same' if a == b else 'text differs', project)
        ta = re.split(r'^(?=Unknown functions)', a, flags=re.M); tb = re.split(r'^(?=Unknown functions)', b, flags=re.M)
        # the lists, which both have in the same form, without the notes that the new one appends
        la = ta[-1]; lb = re.split(r'^Notes: ', tb[-1], flags=re.M)[0]
        note('text lists same' if la == lb else 'text lists differ', project)
for k in sorted(counts): print('%-40s %8d   %s' % (k, counts[k], examples.get(k, '')))
print('added:', ', '.join(sorted(added)))
