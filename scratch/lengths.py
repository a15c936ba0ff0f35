# Own count of function lengths of src: from the line of the definition's name to its closing brace,
# by scanning the text (strings, comments and raw strings blanked), not by a tool of the project.
import re, sys, os
root = sys.argv[1]
def blank(s):
    out=[];i=0;n=len(s)
    while i<n:
        if s.startswith('//',i):
            j=s.find('\n',i); j=n if j<0 else j
            out.append(' '*(j-i)); i=j
        elif s.startswith('/*',i):
            j=s.find('*/',i)+2
            out.append(''.join(c if c=='\n' else ' ' for c in s[i:j])); i=j
        elif s.startswith('R"',i) and (i==0 or not s[i-1].isalnum()):
            m=re.match(r'R"([^(]*)\(',s[i:]); end=')'+m.group(1)+'"'
            j=s.find(end,i)+len(end)
            out.append(''.join(c if c=='\n' else ' ' for c in s[i:j])); i=j
        elif s[i]=='"' or (s[i]=="'" and not (i>0 and s[i-1].isalnum() )):
            q=s[i]; j=i+1
            while s[j]!=q: j+=2 if s[j]=='\\' else 1
            out.append(q+' '*(j-i-1)+q); i=j+1
        elif s[i]=='#' and (i==0 or s[:i].rstrip(' \t').endswith('\n') or not s[:i].strip()):
            j=i
            while True:
                k=s.find('\n',j); k=n if k<0 else k
                if s[k-1]!='\\': break
                j=k+1
            out.append(''.join(c if c=='\n' else ' ' for c in s[i:k])); i=k
        else: out.append(s[i]); i+=1
    return ''.join(out)
lengths=[]
def scan(path):
    s=blank(open(path,encoding='utf-8').read())
    stack=[]  # kinds
    last=0
    for i,c in enumerate(s):
        if c in ';': 
            if not stack or stack[-1][0]!='f': last=i+1
        elif c=='{':
            head=s[last:i]
            inside=any(k=='f' for k,_ in stack)
            if inside: stack.append(('b',i))
            else:
                h=head.strip()
                h2=re.sub(r'template\s*<[^{}]*?>\s*(?=(class|struct|\w))','',h)
                if re.search(r'\b(namespace|class|struct|enum|union)\b[^()]*$',h) : stack.append(('s',i))
                elif re.search(r'\)\s*(const|noexcept|override|final|mutable|->\s*[\w:<>,&*\s]+|:\s*.*|\s)*$',h,re.S) and '=' not in re.sub(r'operator\W+|\([^()]*\)|==|<=|>=|!=','',h).split('(')[0] :
                    # init list brace e.g. ": a_{1}, b_(x) {" -- a member brace directly after identifier
                    if re.search(r':[^:].*\b\w+_?$',h,re.S) and not h.endswith(')') : stack.append(('i',i))
                    else:
                        start=last+len(head)-len(head.lstrip())
                        stack.append(('f',start)); 
                else: stack.append(('v',i))
            if stack[-1][0]=='s': last=i+1
        elif c=='}':
            k,st=stack.pop()
            if k=='f':
                n=s.count('\n',st,i)+1
                lengths.append((n,path,s.count('\n',0,st)+1))
                last=i+1
            elif k in 's': last=i+1
        elif c==':' and s[max(0,i-9):i].strip().split()[-1:] and s[max(0,i-9):i].split()[-1] in ('public','private','protected') and s[i+1]!=':':
            last=i+1
for d,_,fs in os.walk(root):
    for f in fs:
        if f.endswith(('.cpp','.h')): scan(os.path.join(d,f))
lengths.sort()
n=len(lengths)
print(n,'functions; 50 %:',lengths[n//2][0],' 95 %:',lengths[int(n*.95)][0],' longest:')
for l in lengths:
    if l[0]>=40: print(*l)
