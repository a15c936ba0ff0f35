#!/usr/bin/python3
# run.py [ids...]: plants one fault at a time in a copy of its file outside of the repo, compiles that file alone,
# links it before the rest of a built worktree into each test program that it affects, and runs those.
import json, os, re, signal, subprocess, sys, time
sys.path.insert(0, '/work/faults')
from faults import FAULTS
ROOT = os.environ.get('FAULTS_ROOT', '/work/wt/lost')
BUILD = ROOT + '/build/debug'
HOME = '/work/faults'
OUT = HOME + '/' + os.environ.get('FAULTS_OUT', 'results.jsonl')
ENV = dict(os.environ, QT_QPA_PLATFORM='offscreen', GTEST_FAIL_FAST='1', CCACHE_DISABLE='1')
signal.signal(signal.SIGTERM, lambda *a: sys.exit(1))
SLOW = ('*Oracle*:*DeepGraph*:*AVeryDeepChain*:*LinesAreLimitedInBothFormats*:*SourcesThatAreLeftOutAreNotedOnce*:'
        'RandomCommands*:FaultMatrix*:*OneNameInVeryManyFiles*:SpecWriterTest.ManyLines:*Kill*:*CutAnywhere*:*RealProjects*')
PLAN = {
 'platform': ['platform', 'files', 'document', 'readers', 'end-to-end', 'ui'],
 'messages': ['messages', 'document', 'cli', 'end-to-end', 'ui'],
 'core': ['core', 'files', 'reports', 'document', 'cli', 'end-to-end', 'fuzz_replay', 'ui'],
 'files': ['files', 'document', 'end-to-end', 'ui', 'fuzz_replay'],
 'readers': ['readers', 'document', 'end-to-end', 'fuzz_replay'],
 'document': ['document', 'end-to-end', 'ui', 'fuzz_replay'],
 'reports': ['reports', 'cli', 'end-to-end'],
 'cli': ['cli', 'end-to-end'],
 'ui': ['ui'],
}
HEADER_USERS = {
 'platform/host_file.h': ['platform/host_file.cpp', 'platform/host_file_system.cpp'],
 'document/job.h': ['document/job.cpp', 'document/spec_read_job.cpp', 'document/spec_write_job.cpp', 'document/chain_report_job.cpp', 'document/analysis_job.cpp', 'document/document.cpp', 'document/document_saving.cpp', 'document/job_slots.h'],
}
HINTS = [
 ('core/bounds', 'core', 'Bound*:DeepGraph.R*:-BoundsOracle.NoPathOfAny*'), ('core/reason', 'core', 'Bound*:-BoundsOracle.NoPathOfAny*'),
 ('core/detail/group_paths', 'core', 'Bound*:-BoundsOracle.NoPathOfAny*'), ('core/explanation', 'core', 'BoundsOracle.NoPathOfAR*:DeepGraph*'),
 ('core/detail/totals', 'core', 'Recompute*:Adj*'), ('core/detail/function_total', 'core', 'Recompute.*:Other*:Adj*'),
 ('core/detail/top_level', 'core', 'RecomputeOracle*'), ('core/detail/computation', 'core', 'Recompute*:Adj*'),
 ('core/chain', 'core', 'Recompute.*:Bound*:Adj*:DeepGraph.Every*'), ('core/chain', 'files', 'ChainReport*:-*VeryDeep*:*Limited*'),
 ('core/adjust', 'core', 'Adj*'), ('core/function_text', 'core', 'FunctionText*:Function*'),
 ('core/detail/function_name', 'core', 'FunctionTable*'), ('core/detail/call_name', 'core', 'CallName*'),
 ('core/function_table', 'core', 'Function*:Adj*:Bound*.*:-*Oracle*:*OneName*'), ('core/function_table', 'document', 'Spec*:Saving*:Chang*'),
 ('readers/tarn/module', 'readers', 'Module*:Symbol*:-*CutAnywhere*'), ('readers/tarn/code_skip', 'readers', 'CodeLine*:Module*:-*CutAnywhere*'),
 ('readers/tarn/', 'readers', '-Gcc*:*Cut*:*SourcesThat*:*SourcesAre*:Real*'), ('readers/tarn/project', 'readers', 'Project*'),
 ('readers/tarn/source', 'readers', 'Project*'), ('readers/tarn/code_watch', 'readers', 'Module*'), ('readers/tarn/module_p', 'readers', 'ModuleWhole*'),
 ('readers/gcc', 'readers', '-Module*:Project*'), ('readers/conf', 'readers', 'Conf*'), ('document/analysis', 'document', 'Analysis*:Stop*'),
 ('document/module_read', 'document', 'Analysis*:Document*'), ('document/adjust', 'document', 'Adjustment*'),
 ('document/', 'document', 'Saving*:Stop*:Chang*:Spec*:Document*:Chain*'),
 ('files/', 'files', '-*VeryDeep*:*Limited*:*ManyLines*'), ('platform/host_file', 'platform', 'HostFile*'),
]
def sh(cmd, timeout, cwd=BUILD):
    p = subprocess.Popen(cmd, cwd=cwd, env=ENV, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True)
    try:
        out = p.communicate(timeout=timeout)[0]
        return p.returncode, out.decode(errors='replace')
    except BaseException as e:
        os.killpg(p.pid, signal.SIGKILL)  # its own session alone
        p.wait()
        if isinstance(e, subprocess.TimeoutExpired):
            return 'timeout', ''
        raise
COMMANDS = {c['file']: c['command'] for c in json.load(open(BUILD + '/compile_commands.json'))}
LINK = {}
def link_command(name):
    if name not in LINK:
        text = subprocess.run(['ninja', '-C', BUILD, '-t', 'commands', name], capture_output=True, text=True).stdout
        LINK[name] = [l for l in text.splitlines() if ' -o bin/' + name in l][-1]
    return LINK[name]
def compile(path, source, out, more=''):
    c = COMMANDS[ROOT + '/' + path]
    c = re.sub(r'^\S*ccache ', '', c)
    c = re.sub(r' -o \S+', ' -o ' + out, c).replace(' -Werror', '')
    c = re.sub(r' -c \S+', ' -c ' + source, c)
    c = re.sub(r'^(\S+)', r'\1 -I%s/m/src %s' % (HOME, more), c)
    return sh(['bash', '-c', c], 1200)
def link(name, objects):
    c = link_command(name)
    own = ''
    if name == 'end-to-end_test':  # its own build, which knows the program of the fault
        c = re.sub(r'tests/end-to-end/CMakeFiles/end-to-end_test.dir/(\S+\.o)', HOME + r'/e2e/\1', c)
    c = c.replace(' -o bin/' + name, ' %s -fuse-ld=gold -o %s/bin/%s' % (' '.join(objects), HOME, name), 1)
    # before every other object and archive
    first = re.search(r' (\S+\.(o|a))( |$)', c).start()
    c = c.replace(' '.join(objects) + ' ', '', 1)
    c = c[:first] + ' ' + ' '.join(objects) + c[first:]
    return sh(['bash', '-c', c], 900)
def build_e2e():
    os.makedirs(HOME + '/e2e', exist_ok=True); os.makedirs(HOME + '/bin', exist_ok=True)
    folder = ROOT + '/tests/end-to-end/'
    for f in sorted(os.listdir(folder)):
        o = HOME + '/e2e/' + f + '.o'
        if f.endswith('.cpp') and (not os.path.exists(o) or os.path.getmtime(o) < os.path.getmtime(folder + f)):
            path = 'tests/end-to-end/' + f
            c = COMMANDS[ROOT + '/' + path]
            c = re.sub(r'^\S*ccache ', '', c)
            c = re.sub(r'VELKOR_PROGRAM=\S+', 'VELKOR_PROGRAM=' + '\\\\"' + HOME + '/bin/velkor-cli' + '\\\\"', c)
            c = re.sub(r'VELKOR_BUILD_DIR=\S+', 'VELKOR_BUILD_DIR=' + '\\\\"' + HOME + '\\\\"', c)
            c = re.sub(r' -o \S+', ' -o ' + o, c).replace(' -Werror', '')
            rc, out = sh(['bash', '-c', c], 1200)
            if rc != 0:
                sys.exit(out)
def failed(text):
    names = [l.split(']')[1].split(',')[0].split('(')[0].strip() for l in text.splitlines() if l.startswith('[  FAILED  ]') and '.' in l]
    return names[0] if names else 'ends: ' + text.strip()[-120:]
linked = {}
def run(target, objects, filter, timeout):
    name = target + '_test'
    if name not in linked:
        if target in ('end-to-end', 'cli'):
            rc, out = link('velkor-cli', objects)
            if rc != 0:
                return 'link', out
        rc, out = link(name, objects)
        if rc != 0:
            return 'link', out
        linked[name] = True
    return sh([HOME + '/bin/' + name, '--gtest_brief=1', '--gtest_filter=' + filter], timeout, HOME)
def verdict(target, rc, out):
    if rc == 'link':
        return 'build-error', out[-600:]
    if rc == 'timeout':
        return 'caught', target + ' hangs'
    return ('caught', target + ' ' + failed(out)) if rc != 0 else None
def try_fault(fault):
    id, path, old, new = fault
    text = open(ROOT + '/src/' + path).read()
    if text.count(old) != 1:
        return 'not-planted', 'count %d' % text.count(old)
    subprocess.run(['rm', '-rf', HOME + '/m', HOME + '/obj']); os.makedirs(HOME + '/obj')
    planted = HOME + '/m/src/' + path
    os.makedirs(os.path.dirname(planted)); open(planted, 'w').write(text.replace(old, new))
    objects = []
    for i, user in enumerate(HEADER_USERS.get(path, [path])):
        if not user.endswith('.cpp'):
            continue
        source = planted if user == path else ROOT + '/src/' + user
        o = '%s/obj/%d.o' % (HOME, i)
        rc, out = compile('src/' + user, source, o)
        if rc != 0:
            return 'build-error', out[-600:]
        objects.append(o)
    linked.clear()
    room = path.split('/')[0]
    for start, target, filter in HINTS:
        if path.startswith(start):
            hit = verdict(target, *run(target, objects, filter, 600))
            if hit:
                return hit
    for stage in ('-' + SLOW, SLOW):
        for target in PLAN[room]:
            hit = verdict(target, *run(target, objects, stage, 1500))
            if hit:
                return hit
    if room == 'ui':
        rc, out = link('velkor', objects)
        rc, out = (rc, out) if rc != 0 else link('velkor-cli', [])
        if rc != 0:
            return 'build-error', out[-600:]
        rc, out = sh(['bash', ROOT + '/tests/window/journey.sh', HOME + '/bin/velkor', HOME + '/bin/velkor-cli', ROOT + '/examples/lua'], 1500, HOME)
        if rc != 0:
            return 'caught', 'window journey: ' + out.strip()[-100:]
    return 'missed', ''
if __name__ == '__main__':
    wanted = sys.argv[1:]
    done = set()
    if os.path.exists(OUT) and not wanted:
        done = {json.loads(l)['id'] for l in open(OUT)}
    build_e2e()
    for fault in FAULTS:
        if fault[0] in done or (wanted and fault[0] not in wanted):
            continue
        start = time.time()
        status, by = try_fault(fault)
        line = json.dumps({'id': fault[0], 'file': fault[1], 'status': status, 'by': by, 'seconds': round(time.time() - start)})
        open(OUT, 'a').write(line + '\n')
        print(line, flush=True)
