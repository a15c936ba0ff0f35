# base against head over all inputs, every output: bytes must be the same.
import os, subprocess, glob, json, sys
old, new = sys.argv[1:3]
inputs=[]
for root in ['/work/shared/corpus','/work/main/examples']:
    for d,ds,fs in os.walk(root):
        for f in fs:
            if f.endswith('.prj') or f=='velkor.toml': inputs.append(os.path.join(d,f))
        if any(f.endswith('.ci') for f in fs): inputs.append(d)
inputs += sorted(glob.glob('/work/proof14/projects/*/app.prj'))[::5]
same=diff=0
def run(p,a): 
    r=subprocess.run([p]+a,stdin=subprocess.DEVNULL,capture_output=True); return r.returncode,r.stdout,r.stderr
for i in inputs:
    data=['--data','/work/proof14/dat']
    cmds=[['analyze','--format',f,*data,i] for f in ('text','json','csv')]+[['analyze','--full',*data,i]]
    rc,out,err=run(old,cmds[1])
    try: fs=json.loads(out)['functions']
    except Exception: fs=[]
    for f in fs[:: max(1,len(fs)//6)]:
        n=f.get('statement') or f['specName']
        cmds.append(['explain',*data,i,n]); cmds.append(['explain','--format','json',*data,i,n])
    for c in cmds:
        a,b=run(old,c),run(new,c)
        if a==b: same+=1
        else: diff+=1; print('DIFF',c)
print(len(inputs),'inputs',same,'same',diff,'different')
