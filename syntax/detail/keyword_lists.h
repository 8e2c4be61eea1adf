// The built-in keyword lists, one per language row: a blank, then every entry followed by a
// comma. Case is kept as the language writes it; LoadSynWord folds it when the language is not
// case-sensitive. An entry with a blank in it, like the first one with its leading blank, never
// equals a word of the parser; such entries stay and match nothing. Only the language table
// includes this file.
#pragma once

namespace talvor::syntax::detail {
inline constexpr char KeywordsAda[] =
    " abort,abs,abstract,accept,access,aliased,all,and,array,at,begin,body,case,constant,"
    "declare,delay,delta,digits,do,else,elsif,end,entry,exception,exit,for,function,generic,"
    "goto,if,in,is,limited,loop,mod,new,not,null,of,or,others,out,package,pragma,private,"
    "procedure,protected,raise,range,record,rem,renames,requeue,return,reverse,select,"
    "separate,subtype,tagged,task,terminate,then,type,until,use,when,while,with,xor,";

inline constexpr char KeywordsAml[] = "";

inline constexpr char KeywordsAsm[] =
    " eax,ebx,ecx,edx,esi,edi,esp,ebp,eip,ax,bx,cx,dx,si,di,sp,bp,ip,al,ah,bl,bh,cl,ch,dl,dh,"
    "cs,ds,es,fs,gs,ss,cr0,cr2,cr3,cr4,dr0,dr1,dr2,dr3,dr6,dr7,st,aaa,aad,aam,aas,adc,add,"
    "and,arpl,bound,bsf,bsr,bswap,bt,btc,btr,bts,call,cbw,cdq,clc,cld,cli,clts,cmc,cmova,"
    "cmovb,cmove,cmovne,cmp,cmpsb,cmpsd,cmpsw,cmpxchg,cmpxchg8b,cpuid,cwd,cwde,daa,das,dec,"
    "div,enter,hlt,idiv,imul,in,inc,insb,insd,insw,int,into,invd,invlpg,iret,iretd,ja,jae,jb,"
    "jbe,jc,jcxz,je,jecxz,jg,jge,jl,jle,jmp,jna,jnae,jnb,jnbe,jnc,jne,jng,jnge,jnl,jnle,jno,"
    "jnp,jns,jnz,jo,jp,jpe,jpo,js,jz,lahf,lar,lds,lea,leave,les,lfs,lgdt,lgs,lidt,lldt,lmsw,"
    "lock,lodsb,lodsd,lodsw,loop,loope,loopne,loopnz,loopz,lsl,lss,ltr,mov,movsb,movsd,movsw,"
    "movsx,movzx,mul,neg,nop,not,or,out,outsb,outsd,outsw,pop,popa,popad,popf,popfd,push,"
    "pusha,pushad,pushf,pushfd,rcl,rcr,rdmsr,rdpmc,rdtsc,rep,repe,repne,repnz,repz,ret,retf,"
    "retn,rol,ror,rsm,sahf,sal,sar,sbb,scasb,scasd,scasw,seta,setae,setb,setbe,setc,sete,"
    "setg,setge,setl,setle,setna,setnc,setne,setng,setnz,seto,sets,setz,sgdt,shl,shld,shr,"
    "shrd,sidt,sldt,smsw,stc,std,sti,stosb,stosd,stosw,str,sub,sysenter,sysexit,test,ud2,"
    "verr,verw,wait,wbinvd,wrmsr,xadd,xchg,xlat,xlatb,xor,f2xm1,fabs,fadd,faddp,fchs,fclex,"
    "fcom,fcomp,fcompp,fcos,fdiv,fdivp,fdivr,ffree,fiadd,ficom,fidiv,fild,fimul,finit,fist,"
    "fistp,fisub,fld,fld1,fldcw,fldpi,fldz,fmul,fmulp,fpatan,fprem,fptan,frndint,fscale,fsin,"
    "fsincos,fsqrt,fst,fstcw,fstp,fstsw,fsub,fsubp,fsubr,fsubrp,ftst,fwait,fxch,fxtract,"
    "fyl2x,align,assume,at,bits,byte,comm,db,dd,df,dq,dt,dup,dw,dword,else,end,endif,endm,"
    "endp,ends,equ,even,extern,extrn,far,fword,global,group,if,ifdef,ifndef,include,incbin,"
    "label,length,local,macro,near,offset,org,proc,ptr,public,qword,resb,resd,resq,resw,"
    "section,seg,segment,short,size,struc,tbyte,times,type,word,";

inline constexpr char KeywordsBasic[] =
    " Alias,And,Any,As,Base,Boolean,Byref,Byte,Byval,Call,Case,Close,Compare,Const,Currency,"
    "Data,Date,Declare,Defbool,Defbyte,Defcur,Defdate,Defdbl,Defdec,Defint,Deflng,Defobj,"
    "Defsng,Defstr,Defvar,Dim,Do,Double,Each,Else,Elseif,End,Enum,Eqv,Erase,Error,Event,Exit,"
    "Explicit,False,For,Function,Get,Global,Gosub,Goto,If,IIf,Imp,Implements,In,Integer,Is,"
    "Let,Lib,Line,Lock,Long,Loop,Lset,New,Next,Not,Object,On,Open,Option,Optional,Or,"
    "Preserve,Print,Private,Property,Public,Put,Raiseevent,Redim,Resume,Return,Rset,Select,"
    "Set,Single,Static,Stop,String,Sub,Then,To,True,Type,Ubound,Unload,Unlock,Var,Variant,"
    "Wend,While,With,Write,Xor,#if,#End,#else,";

inline constexpr char KeywordsBat[] =
    " do,echo,errorlevel,exist,for,goto,if,in,not,off,on,call,cls,cd,chdir,copy,del,dir,"
    "erase,exit,md,mkdir,move,path,pause,popd,pushd,prompt,rd,rem,ren,rename,rmdir,set,"
    "setlocal,endlocal,shift,start,title,type,ver,verify,vol,choice,color,defined,else,equ,"
    "neq,lss,leq,gtr,geq,nul,con,prn,aux,assoc,attrib,break,date,time,ftype,xcopy,";

inline constexpr char KeywordsBlue[] =
    " class,is,uses,internal,interface,creation,routines,enumeration,manifest,var,const,pre,"
    "post,do,end,if,then,else,elsif,loop,exit,on,case,of,return,assert,debug,old,result,self,"
    "super,true,false,nil,and,or,not,xor,implies,inherit,invariant,external,array,for,in,to,"
    "from,step,reverse,when,while,until,integer,real,boolean,string,char,print,abstract,"
    "private,";

inline constexpr char KeywordsClipper[] =
    " .and.,.f.,.not.,.or.,.t.,.y.,.n.,accept,announce,append,average,begin,box,call,cancel,"
    "case,clear,close,commit,continue,copy,count,create,declare,default,delete,dir,display,"
    "do,eject,else,elseif,end,endcase,enddo,endif,erase,exit,external,field,find,for,"
    "function,get,go,goto,if,index,init,input,join,keyboard,label,list,local,locate,loop,"
    "memvar,menu,next,otherwise,pack,parameters,private,procedure,public,quit,read,recall,"
    "reindex,release,rename,replace,report,restore,return,run,save,say,seek,select,sequence,"
    "set,skip,sort,static,store,sum,text,total,unlock,update,use,wait,while,with,zap,alltrim,"
    "asc,at,bof,chr,ctod,date,day,dbcreate,dbusearea,deleted,dtoc,dtos,empty,eof,found,iif,"
    "int,len,left,lower,ltrim,max,min,month,padc,padl,padr,recno,replicate,right,round,rtrim,"
    "space,str,substr,time,trim,upper,val,valtype,year,";

inline constexpr char KeywordsCobol[] =
    " ACCEPT,ACCESS,ADD,ADVANCING,AFTER,ALL,AND,ARE,AREA,ASCENDING,ASSIGN,AT,BEFORE,BINARY,"
    "BLANK,BLOCK,BY,CALL,CANCEL,CHARACTER,CHARACTERS,CLOSE,CODE,COMMA,COMP,COMP-3,"
    "COMPUTATIONAL,COMPUTE,CONFIGURATION,CONTAINS,CONTENT,CONTINUE,COPY,CORRESPONDING,COUNT,"
    "DATA,DATE,DAY,DECIMAL-POINT,DELETE,DELIMITED,DELIMITER,DEPENDING,DESCENDING,DISPLAY,"
    "DIVIDE,DIVISION,DOWN,DUPLICATES,DYNAMIC,ELSE,END,END-EXEC,END-EVALUATE,END-IF,"
    "END-PERFORM,END-READ,ENVIRONMENT,EQUAL,ERROR,EVALUATE,EXCEPTION,EXEC CICS,EXIT,EXTEND,"
    "FD,FILE,FILE-CONTROL,FILLER,FIRST,FOR,FROM,GIVING,GO,GOBACK,GREATER,HIGH-VALUES,I-O,"
    "I-O-CONTROL,IDENTIFICATION,IF,IN,INDEX,INDEXED,INITIALIZE,INPUT,INPUT-OUTPUT,INSPECT,"
    "INTO,INVALID,IS,JUSTIFIED,KEY,LEADING,LESS,LINE,LINKAGE,LOW-VALUES,MODE,MOVE,MULTIPLY,"
    "NEXT,NOT,NUMERIC,OCCURS,OF,OMITTED,ON,OPEN,OR,ORGANIZATION,OTHER,OUTPUT,PERFORM,PIC,"
    "PICTURE,PROCEDURE,PROGRAM-ID,RANDOM,READ,RECORD,REDEFINES,RELATIVE,REPLACING,RETURN,"
    "REWRITE,ROUNDED,RUN,SEARCH,SECTION,SELECT,SENTENCE,SEQUENTIAL,SET,SIGN,SIZE,SORT,SPACE,"
    "SPACES,STATUS,STOP,STRING,SUBTRACT,TALLYING,THAN,THEN,THRU,TIMES,TO,TRUE,UNTIL,UP,UPON,"
    "USAGE,USING,VALUE,VALUES,VARYING,WHEN,WITH,WORKING-STORAGE,WRITE,ZERO,ZEROES,";

inline constexpr char KeywordsCpp[] =
    " #define,#else,#elif,#elseif,#endif,#error,#if,#ifdef,#ifndef,#import,#include,#line,"
    "#pragma,#undef,#using,__asm,__cdecl,__declspec,__except,__fastcall,__finally,__inline,"
    "__int64,__stdcall,__try,alignas,alignof,and,asm,auto,bitand,bitor,bool,break,case,catch,"
    "char,char16_t,char32_t,class,compl,const,const_cast,constexpr,continue,decltype,default,"
    "defined,delete,do,double,dynamic_cast,else,enum,explicit,export,extern,false,final,"
    "float,for,friend,goto,if,inline,int,long,mutable,namespace,new,noexcept,not,nullptr,"
    "operator,or,override,private,protected,public,register,reinterpret_cast,return,short,"
    "signed,sizeof,static,static_assert,static_cast,struct,switch,template,this,thread_local,"
    "throw,true,try,typedef,typeid,typename,union,unsigned,using,virtual,void,volatile,"
    "wchar_t,while,xor,concept,requires,consteval,co_await,co_return,co_yield,__int32,"
    "__leave,";

inline constexpr char KeywordsCSharp[] =
    " #define,#else,#elif,#elseif,#endif,#endregion,#error,#if,#line,#pragma,#region,#undef,"
    "#warning,abstract,as,base,bool,break,byte,case,catch,char,checked,class,const,continue,"
    "decimal,default,delegate,do,double,else,enum,event,explicit,extern,false,finally,fixed,"
    "float,for,foreach,goto,if,implicit,in,int,interface,internal,is,lock,long,namespace,new,"
    "null,object,operator,out,override,params,private,protected,public,readonly,ref,return,"
    "sbyte,sealed,short,sizeof,stackalloc,static,string,struct,switch,this,throw,true,try,"
    "typeof,uint,ulong,unchecked,unsafe,ushort,using,virtual,void,volatile,while,add,alias,"
    "ascending,async,await,by,descending,dynamic,equals,from,get,global,group,into,join,let,"
    "on,orderby,partial,remove,select,set,value,var,when,where,yield,";

inline constexpr char KeywordsDataflex[] =
    " abs,accept,acos,append_output,asin,atan,attach,autopage,backfield,begin,blankform,"
    "boolean,break,broadcast,calc,call,case,chain,character,class,clear,close,cmdline,"
    "constrain,copyfile,cos,count,create_field,date,decrement,define,delegate,delete,"
    "deleteindex,diskfree,display,else,end,end_class,end_constrain,end_enumeration_list,"
    "end_function,end_object,end_procedure,end_struct,end_type,enumeration_list,erasefile,"
    "error,exp,false,field_def,file_exist,filelist,find,for,forward,from,function,"
    "function_return,get,get_argument_size,get_attribute,gotoxy,handle,if,ifchange,"
    "import_class_protocol,increment,indicate,indicator,inherit,input,insert,integer,"
    "is_file_included,keyproc,left,length,local,log,loop,lowercase,ltrim,make_file,mid,mod,"
    "move,movedate,moveint,movenum,movereal,movestr,name,number,object,on_item,on_key,open,"
    "output,pad,pos,procedure,procedure_section,property,random,read,readln,real,"
    "register_function,register_object,register_procedure,relate,repeat,replace,reread,"
    "return,right,round,rtrim,save,saverecord,send,set,set_attribute,show,showln,sin,sqrt,"
    "string,struct,sysdate,tan,to,trim,true,type,unlock,until,uppercase,use,while,write,"
    "writeln,zerofile,";

inline constexpr char KeywordsEiffel[] =
    " and,as,check,class,agent,alias,all,assign,attached,attribute,convert,create,creation,"
    "Current,debug,deferred,detachable,do,else,elseif,end,ensure,expanded,export,external,"
    "False,feature,from,frozen,if,implies,indexing,infix,inherit,inspect,invariant,is,like,"
    "local,loop,not,note,obsolete,old,once,only,or,Precursor,prefix,redefine,rename,require,"
    "rescue,Result,retry,select,separate,strip,then,True,TUPLE,undefine,unique,until,variant,"
    "Void,when,xor,ANY,ARRAY,BIT,BOOLEAN,CHARACTER,DOUBLE,GENERAL,HASHABLE,INTEGER,INTEGER_8,"
    "INTEGER_16,INTEGER_32,INTEGER_64,NATURAL,NATURAL_8,NATURAL_16,NATURAL_32,NATURAL_64,"
    "NONE,NUMERIC,PLATFORM,POINTER,REAL,REAL_32,REAL_64,STRING,STRING_8,STRING_32,COMPARABLE,"
    "LIST,ARRAYED_LIST,LINKED_LIST,HASH_TABLE,FILE,TYPE,ROUTINE,PROCEDURE,FUNCTION,PREDICATE,"
    "ITERATION_CURSOR,";

inline constexpr char KeywordsFortran[] =
    " ALLOCATABLE,CHARACTER,COMMON,COMPLEX,ALLOCATE,ASSIGN,BACKSPACE,BLOCK,CALL,CASE,CLOSE,"
    "CONTAINS,CONTINUE,CYCLE,DATA,DEALLOCATE,DEFAULT,DIMENSION,DO,DOUBLE,ELEMENTAL,ELSE,"
    "ELSEIF,ELSEWHERE,END,ENDDO,ENDIF,ENDFILE,ENTRY,EQUIVALENCE,EXIT,EXTERNAL,FORALL,FORMAT,"
    "FUNCTION,GO,GOTO,IF,IMPLICIT,IN,INCLUDE,INOUT,INQUIRE,INTEGER,INTENT,INTERFACE,"
    "INTRINSIC,KIND,LEN,LOGICAL,MODULE,NAMELIST,NONE,NULLIFY,ONLY,OPEN,OPERATOR,OPTIONAL,OUT,"
    "PARAMETER,PAUSE,POINTER,PRECISION,PRINT,PRIVATE,PROCEDURE,PROGRAM,PUBLIC,PURE,READ,REAL,"
    "RECURSIVE,RESULT,RETURN,REWIND,SAVE,SELECT,SEQUENCE,STOP,SUBROUTINE,TARGET,THEN,TO,TYPE,"
    "USE,WHERE,WHILE,WRITE,.AND.,.OR.,.NOT.,.EQ.,.NE.,.LT.,.LE.,.GT.,.GE.,.TRUE.,.FALSE.,"
    ".EQV.,.NEQV.,ABS,ACHAR,ACOS,ADJUSTL,ADJUSTR,AIMAG,AINT,ALL,ALLOCATED,ALOG,ALOG10,ANINT,"
    "ANY,ASIN,ASSOCIATED,ATAN,ATAN2,BIT_SIZE,BTEST,CEILING,CHAR,CMPLX,CONJG,COS,COSH,COUNT,"
    "CSHIFT,DABS,DACOS,DASIN,DATAN,DATAN2,DBLE,DCOS,DCOSH,DEXP,DIGITS,DIM,DINT,DLOG,DLOG10,"
    "DMOD,DNINT,DOT_PRODUCT,DSIGN,DSIN,DSINH,DSQRT,DTAN,DTANH,EOSHIFT,EPSILON,EXP,EXPONENT,"
    "FLOAT,FLOOR,FRACTION,HUGE,IABS,IACHAR,IAND,IBCLR,IBITS,IBSET,ICHAR,IDNINT,IEOR,INDEX,"
    "INT,IOR,ISHFT,ISHFTC,ISIGN,LBOUND,LEN_TRIM,LGE,LGT,LLE,LLT,LOG,LOG10,MATMUL,MAX,"
    "MAXEXPONENT,MAXLOC,MAXVAL,MERGE,MIN,MIN1,MINEXPONENT,MINLOC,MINVAL,MOD,MODULO,MVBITS,"
    "NEAREST,NINT,NOT,PACK,PRESENT,PRODUCT,RADIX,RANDOM_NUMBER,RANDOM_SEED,RANGE,REPEAT,"
    "RESHAPE,RRSPACING,SCALE,SCAN,SELECTED_INT_KIND,SELECTED_REAL_KIND,SET_EXPONENT,SHAPE,"
    "SIGN,SIN,SINH,SIZE,SNGL,SPACING,SPREAD,SQRT,SUM,SYSTEM_CLOCK,TAN,TANH,TINY,TRANSFER,"
    "TRANSPOSE,TRIM,UBOUND,UNPACK,VERIFY,";

inline constexpr char KeywordsHlbl[] =
    " AND,ARRAY,AS,ASM,BEGIN,BOOLEAN,BYTE,CASE,CHAR,CONST,DIV,DO,DOWNTO,ELSE,END,FALSE,FILE,"
    "FOR,FUNCTION,GOTO,IF,IN,INTEGER,LABEL,MOD,NIL,NOT,OF,OR,PROCEDURE,PROGRAM,REAL,RECORD,"
    "REPEAT,SET,STRING,THEN,TO,TRUE,TYPE,UNTIL,VAR,WHILE,WITH,";

inline constexpr char KeywordsHtml[] =
    " center,codebase,quality,pluginspage,a,abbr,acronym,address,applet,area,b,base,basefont,"
    "bdo,big,blockquote,body,br,button,caption,cite,code,col,colgroup,dd,del,dfn,dir,div,dl,"
    "dt,em,embed,fieldset,font,form,frame,frameset,h1,h2,h3,h4,h5,h6,head,hr,html,i,iframe,"
    "img,input,ins,kbd,label,legend,li,link,map,menu,meta,noframes,noscript,object,ol,"
    "optgroup,option,p,param,pre,q,s,samp,script,select,small,span,strike,strong,style,sub,"
    "sup,table,tbody,td,textarea,tfoot,th,thead,title,tr,tt,u,ul,var,action,align,alink,alt,"
    "archive,background,bgcolor,border,cellpadding,cellspacing,charset,checked,class,classid,"
    "clear,color,cols,colspan,content,coords,data,face,frameborder,height,href,hspace,"
    "http-equiv,id,lang,language,marginheight,marginwidth,maxlength,method,multiple,name,"
    "nowrap,onblur,onchange,onclick,onfocus,onload,onmouseout,onmouseover,onsubmit,readonly,"
    "rel,rows,rowspan,scrolling,selected,shape,size,src,tabindex,target,text,type,valign,"
    "value,vlink,vspace,width,nobr,marquee,";

inline constexpr char KeywordsIni[] = "";

inline constexpr char KeywordsJava[] =
    " abstract,boolean,break,byte,case,catch,char,class,const,continue,default,do,double,"
    "else,extends,final,finally,float,for,goto,if,implements,import,instanceof,int,interface,"
    "long,native,new,package,private,protected,public,return,short,static,strictfp,super,"
    "switch,synchronized,this,throw,throws,transient,try,void,volatile,while,assert,";

inline constexpr char KeywordsJsp[] =
    " abstract,boolean,break,byte,case,catch,char,class,const,continue,default,do,double,"
    "else,extends,final,finally,float,for,goto,if,implements,import,instanceof,int,interface,"
    "long,native,new,package,private,protected,public,return,short,static,strictfp,super,"
    "switch,synchronized,this,throw,throws,transient,try,void,volatile,while,assert,false,"
    "null,true,";

inline constexpr char KeywordsLimbo[] =
    " adt,alt,break,case,array,big,byte,chan,con,continue,cyclic,do,else,exit,fn,for,hd,if,"
    "implement,import,include,int,len,list,load,module,nil,of,or,pick,real,ref,return,self,"
    "spawn,string,tagof,tl,to,type,while,";

inline constexpr char KeywordsLisp[] =
    " ABS,ADD1,AND,APPEND,APPLY,ASSOC,ATOM,BLOCK,CAAR,CADR,CAR,CASE,CATCH,CDAR,CDDR,CDR,COND,"
    "CONS,CONSP,DECLARE,DEFCLASS,DEFCONSTANT,DEFGENERIC,DEFMACRO,DEFMETHOD,DEFPARAMETER,"
    "DEFSTRUCT,DEFUN,DEFVAR,DIFFERENCE,DO,DOLIST,DOTIMES,EQ,EQL,EQUAL,ERROR,EVAL,EVENP,EXPT,"
    "FIRST,FLET,FORMAT,FUNCALL,FUNCTION,GET,GO,GREATERP,IF,LABELS,LAMBDA,LAST,LENGTH,LESSP,"
    "LET,LIST,LISTP,LOOP,MAPC,MAPCAR,MAX,MEMBER,MIN,MINUSP,MOD,NIL,NOT,NTH,NTHCDR,NULL,"
    "NUMBERP,ODDP,OR,PLUS,PLUSP,PRINC,PRINT,PROG,PROG1,PROGN,PUTPROP,QUOTE,QUOTIENT,READ,"
    "REMAINDER,REMPROP,RETURN,REVERSE,RPLACA,RPLACD,SETF,SETQ,SQRT,STRINGP,SUB1,SYMBOLP,T,"
    "TAGBODY,TERPRI,THROW,TIMES,UNLESS,VALUES,WHEN,ZEROP,";

inline constexpr char KeywordsModula2[] =
    " and,begin,by,case,const,definition,div,do,else,elsif,end,exit,export,for,from,if,"
    "implementation,import,in,loop,mod,module,not,of,or,pointer,procedure,qualified,record,"
    "repeat,return,set,then,to,type,until,var,while,with,array,abs,bitset,boolean,byte,cap,"
    "cardinal,char,chr,dec,dispose,excl,false,float,halt,high,inc,incl,integer,longint,"
    "longreal,max,min,new,nil,odd,ord,proc,real,size,true,trunc,val,word,";

inline constexpr char KeywordsObjectPascal[] =
    " Absolute,Abstract,And,Array,As,Asm,Assembler,At,Begin,Case,Cdecl,Class,Const,"
    "Constructor,Default,Destructor,Dispid,Dispinterface,Div,Do,Downto,Dynamic,Else,End,"
    "Except,Export,Exports,External,Far,File,Finalization,Finally,For,Forward,Function,Goto,"
    "If,Implementation,Implements,In,Index,Inherited,Initialization,Inline,Interface,Is,"
    "Label,Library,Message,Mod,Name,Near,Nil,Nodefault,Not,Object,Of,On,Or,Out,Overload,"
    "Override,Package,Packed,Pascal,Private,Procedure,Program,Property,Protected,Public,"
    "Published,Raise,Read,Readonly,Record,Register,Reintroduce,Repeat,Resident,"
    "Resourcestring,Safecall,Set,Shl,Shr,Stdcall,Stored,String,Then,Threadvar,To,Try,Type,"
    "Unit,Until,Uses,Var,Virtual,While,With,Write,Writeonly,Xor,";

inline constexpr char KeywordsParadox[] =
    " and,as,case,caseInsensitive,const,create,disableDefault,do,doDefault,dynArray,else,"
    "elseif,enableDefault,endConst,endCreate,endFor,endForEach,endIf,endIndex,endMethod,"
    "endProc,endQuery,endRecord,endScan,endSort,endSql,endSwitch,endTry,endType,endUses,"
    "endVar,endWhile,for,forEach,from,if,iif,in,index,indexStruct,is,key,like,loop,"
    "maintained,method,not,of,on,onFail,or,otherwise,passEvent,primary,proc,query,quitLoop,"
    "record,refIntStruct,retry,return,scan,secStruct,sort,sql,step,struct,switch,tag,then,to,"
    "try,type,unique,uses,var,where,while,with,without,AnyType,Array,Binary,Boolean,Currency,"
    "Date,DateTime,DynArray,Graphic,Logical,LongInt,Memo,Number,OLE,Point,SmallInt,String,"
    "Time,TimeStamp,Database,DDE,FileSystem,Form,Library,Menu,Report,Session,Table,TCursor,"
    "TextStream,UIObject,action,arrive,canArrive,canDepart,changeValue,close,depart,error,"
    "keyChar,keyPhysical,menuAction,mouseClick,mouseDown,mouseUp,newValue,open,pushButton,"
    "removeFocus,setFocus,status,timer,";

inline constexpr char KeywordsPerl[] =
    " __DATA__,__END__,__FILE__,__LINE__,__PACKAGE__,abs,accept,alarm,and,atan2,bind,binmode,"
    "bless,caller,chdir,chmod,chomp,chop,chown,chr,chroot,close,closedir,cmp,connect,"
    "continue,cos,crypt,dbmclose,dbmopen,defined,delete,die,do,dump,each,else,elsif,endgrent,"
    "endpwent,eof,eq,eval,exec,exists,exit,exp,fcntl,fileno,flock,for,foreach,fork,format,"
    "formline,ge,getc,getgrent,getgrgid,getgrnam,gethostbyaddr,gethostbyname,gethostent,"
    "getlogin,getnetbyaddr,getnetbyname,getpeername,getpgrp,getppid,getpriority,"
    "getprotobyname,getprotobynumber,getprotoent,getpwent,getpwnam,getpwuid,getservbyname,"
    "getservbyport,getservent,getsockname,getsockopt,glob,gmtime,goto,grep,gt,hex,if,import,"
    "index,int,ioctl,join,keys,kill,last,lc,lcfirst,le,length,link,listen,local,localtime,"
    "log,lstat,lt,map,mkdir,msgctl,msgget,msgrcv,msgsnd,my,ne,next,no,not,oct,open,opendir,"
    "or,ord,our,pack,package,pipe,pop,pos,print,printf,prototype,push,quotemeta,rand,read,"
    "readdir,readline,readlink,readpipe,recv,redo,ref,rename,require,reset,return,reverse,"
    "rewinddir,rindex,rmdir,scalar,seek,seekdir,select,semctl,semget,semop,send,setgrent,"
    "setpgrp,setpriority,setpwent,setsockopt,shift,shmctl,shmget,shmread,shmwrite,shutdown,"
    "sin,sleep,socket,socketpair,sort,splice,split,sprintf,sqrt,srand,stat,study,sub,substr,"
    "symlink,syscall,sysopen,sysread,sysseek,system,syswrite,tell,telldir,tie,tied,time,"
    "times,truncate,uc,ucfirst,umask,undef,unless,unlink,unpack,unshift,untie,until,use,"
    "utime,values,vec,wait,waitpid,wantarray,warn,while,write,xor,";

inline constexpr char KeywordsPhp[] =
    " __FILE__,__LINE__,BOOL,BREAK,ARRAY,AS,CASE,CLASS,CONST,CONTINUE,DEFAULT,DEFINE,DO,ECHO,"
    "ELSE,ELSEIF,EMPTY,ENDFOR,ENDIF,ENDSWITCH,ENDWHILE,EVAL,EXIT,EXTENDS,FALSE,FLOAT,FOR,"
    "FOREACH,FUNCTION,GLOBAL,IF,INCLUDE,INT,ISSET,LIST,NEW,NULL,OBJECT,PRINT,REQUIRE,RETURN,"
    "STATIC,STRING,SWITCH,TRUE,UNSET,VAR,WHILE,";

inline constexpr char KeywordsPl1[] =
    " act,activate,alloc,allocate,aligned,area,auto,automatic,based,begin,bin,binary,bit,buf,"
    "buffered,builtin,by,call,char,character,close,complex,cond,condition,controlled,conv,"
    "conversion,cplx,ctl,dcl,dec,decimal,declare,def,default,define,defined,delay,delete,dft,"
    "direct,display,do,edit,else,end,endfile,endpage,entry,env,environment,error,excl,"
    "exclusive,exit,ext,external,fetch,file,finish,fixed,fixedoverflow,float,flush,fofl,"
    "format,free,from,get,go,goto,if,ignore,in,include,init,initial,input,int,internal,into,"
    "irred,irreducible,key,keyed,keyfrom,keyto,label,leave,like,line,linesize,list,locate,"
    "loop,main,name,nocheck,noconv,noconversion,nofixedoverflow,nofofl,nolock,noofl,"
    "nooverflow,normal,nosize,nostrg,nostringrange,nostringsize,nostrz,nosubrg,"
    "nosubscriptrange,nounderflow,nounfl,nozdiv,nozerodivide,offset,ofl,on,open,options,"
    "order,otherwise,output,overflow,page,pageno,pagesize,parameter,parm,pic,picture,pointer,"
    "pos,position,prec,precision,print,proc,procedure,ptr,put,range,read,real,record,"
    "recursive,red,reducible,refer,reorder,repeat,replace,reply,reread,return,returns,revert,"
    "rewrite,select,seql,sequential,set,signal,size,skip,snap,static,stop,stream,strg,string,"
    "stringrange,stringsize,strz,structure,subrg,subscriptrange,system,task,then,thread,"
    "title,to,transmit,ufl,undefinedfile,underflow,undf,unlock,until,update,value,var,"
    "variable,wait,when,while,write,zdiv,zerodivide,abs,addr,after,before,ceil,copy,date,dim,"
    "divide,floor,hbound,high,index,lbound,length,low,max,min,mod,null,onchar,oncode,"
    "onsource,round,sign,sqrt,substr,sum,time,translate,trim,trunc,unspec,verify,generic,";

inline constexpr char KeywordsProgress[] =
    " BIN,BYTE,CHAR,CHARACTER,COM-HANDLE,DATE,DEC,DECIMAL,DOUBLE,FLOAT,HANDLE,INT,INTEGER,"
    "LOG,LOGICAL,LONG,MEMPTR,RAW,RECID,ROWID,SHORT,UNSIGNED-SHORT,WIDGET,WIDGET-HANDLE,";

inline constexpr char KeywordsPython[] =
    " and,assert,break,class,continue,def,del,elif,else,except,exec,finally,for,from,global,"
    "if,import,in,is,lambda,None,not,or,pass,print,raise,return,try,while,";

inline constexpr char KeywordsRexx[] =
    " address,arg,by,call,do,drop,else,end,exit,expose,for,forever,if,interpret,iterate,"
    "leave,nop,numeric,otherwise,parse,procedure,pull,push,queue,return,say,select,signal,"
    "then,to,trace,until,upper,value,var,when,while,with,digits,form,fuzz,scientific,"
    "engineering,source,version,linein,lineout,lines,charin,charout,chars,stream,on,off,"
    "error,failure,halt,novalue,syntax,notready,name,options,external,abbrev,abs,b2x,bitand,"
    "bitor,bitxor,c2d,c2x,center,centre,compare,condition,copies,d2c,d2x,datatype,date,"
    "delstr,delword,errortext,format,insert,lastpos,left,length,max,min,overlay,pos,queued,"
    "random,reverse,right,sign,sourceline,space,strip,substr,subword,symbol,time,translate,"
    "trunc,verify,word,wordindex,wordlength,wordpos,words,x2b,x2c,x2d,xrange,";

inline constexpr char KeywordsRuby[] =
    " alias,and,begin,BEGIN,break,case,class,def,defined?,do,else,elsif,end,END,ensure,false,"
    "for,if,in,module,next,nil,not,or,redo,rescue,retry,return,self,super,then,true,undef,"
    "unless,until,when,while,yield,__FILE__,__LINE__,__ENCODING__,attr,attr_accessor,"
    "attr_reader,attr_writer,include,extend,prepend,require,require_relative,load,private,"
    "protected,public,module_function,raise,fail,lambda,proc,puts,print,printf,p,gets,loop,"
    "catch,throw,sleep,sprintf,format,rand,srand,exit,abort,at_exit,binding,block_given?,"
    "caller,define_method,instance_variable_get,instance_variable_set,instance_of?,is_a?,"
    "kind_of?,respond_to?,send,method_missing,freeze,frozen?,dup,clone,each,each_with_index,"
    "each_pair,map,select,reject,inject,reduce,find,detect,collect,sort,sort_by,min,max,sum,"
    "count,include?,empty?,nil?,new,initialize,to_s,to_a,to_h,to_i,to_f,to_sym,to_proc,"
    "inspect,hash,eql?,equal?,class_eval,instance_eval,module_eval,const_get,const_set,"
    "alias_method,remove_method,undef_method,superclass,ancestors,instance_methods,Array,"
    "Hash,String,Symbol,Integer,Float,Proc,Object,Module,Class,Kernel,Comparable,Enumerable,"
    "Exception,StandardError,RuntimeError,ArgumentError,NameError,NoMethodError,TypeError,"
    "IOError,File,Dir,IO,Struct,Time,Range,Regexp,Thread,Mutex,STDIN,STDOUT,STDERR,ARGV,ENV,"
    "merge,fetch,store,key?,keys,values,push,pop,shift,unshift,first,last,join,split,strip,"
    "gsub,sub,match,scan,length,size,upcase,downcase,";

inline constexpr char KeywordsSql[] =
    " 1CE,1OL,ABS,AFTER,ALL,ALTER,AND,ANY,AS,ASC,AUTHORIZATION,AVG,BEFORE,BEGIN,BETWEEN,"
    "BIGINT,BINARY,BLOB,BOOLEAN,BY,CASCADE,CASE,CAST,CHAR,CHARACTER,CHECK,CLOSE,COALESCE,"
    "COLUMN,COMMIT,CONSTRAINT,CONTINUE,CONVERT,COUNT,CREATE,CROSS,CURRENT,CURRENT_DATE,"
    "CURRENT_TIMESTAMP,CURSOR,DATABASE,DATE,DECIMAL,DECLARE,DEFAULT,DELETE,DESC,DISTINCT,"
    "DOUBLE,DROP,EACH,ELSE,END,ESCAPE,EXCEPT,EXCEPTION,EXEC,EXECUTE,EXISTS,EXIT,FETCH,FLOAT,"
    "FOR,FOREIGN,FROM,FULL,FUNCTION,GRANT,GROUP,HAVING,IF,IN,INDEX,INNER,INSERT,INT,INTEGER,"
    "INTERSECT,INTO,IS,JOIN,KEY,LEFT,LIKE,LIMIT,LOOP,LOWER,MAX,MIN,MINUS,MOD,NATURAL,NOT,"
    "NULL,NUMBER,NUMERIC,OF,ON,OPEN,OPTION,OR,ORDER,OUTER,PACKAGE,PRIMARY,PRIOR,PRIVILEGES,"
    "PROCEDURE,PUBLIC,RAISE,REAL,REFERENCES,REPLACE,RETURN,RETURNS,REVOKE,RIGHT,ROLLBACK,ROW,"
    "ROWNUM,ROWS,SAVEPOINT,SELECT,SEQUENCE,SESSION,SET,SMALLINT,SOME,SUBSTRING,SUM,SYSDATE,"
    "TABLE,THEN,TIME,TIMESTAMP,TO,TRANSACTION,TRIGGER,TRIM,TRUNCATE,UNION,UNIQUE,UPDATE,"
    "UPPER,USER,USING,VALUES,VARCHAR,VARCHAR2,VIEW,WHEN,WHERE,WHILE,WITH,WORK,VARYING,";

inline constexpr char KeywordsVhdl[] =
    " abs,access,after,alias,all,and,architecture,array,assert,attribute,begin,block,body,"
    "buffer,bus,case,component,configuration,constant,disconnect,downto,else,elsif,end,"
    "entity,exit,file,for,function,generate,generic,group,guarded,if,impure,in,inertial,"
    "inout,is,label,library,linkage,literal,loop,map,mod,nand,new,next,nor,not,null,of,on,"
    "open,or,others,out,package,port,postponed,procedure,process,pure,range,record,register,"
    "reject,rem,report,return,rol,ror,select,severity,shared,signal,sla,sll,sra,srl,subtype,"
    "then,to,transport,type,unaffected,units,until,use,variable,wait,when,while,with,xnor,"
    "xor,bit,bit_vector,boolean,character,integer,natural,positive,real,std_logic,"
    "std_logic_vector,std_ulogic,std_ulogic_vector,string,time,signed,unsigned,rising_edge,"
    "falling_edge,";

inline constexpr char KeywordsXml[] =
    " !DOCTYPE,!ENTITY,!ELEMENT,!ATTLIST,!NOTATION,CDATA,ID,IDREF,IDREFS,ENTITY,ENTITIES,"
    "NMTOKEN,NMTOKENS,^#REQUIRED,^#IMPLIED,^#FIXED,";

} // namespace talvor::syntax::detail
