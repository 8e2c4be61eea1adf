// Answers regular expression cases with JavaScript's RegExp, for the differential test of
// the facade. Input: one case per line, tab separated: id, flags ("g", "i", both or "-"),
// pattern, text, replacement; each string as UTF-16 code units in four hex digits, so lone
// surrogates and control characters pass unchanged. Output, one line per case: id, then "E"
// when RegExp rejects the pattern, else the Test result (0 or 1), the matches of a walk that
// steps one unit past an empty match ("index,length,value" joined by ";") and the result of
// String.prototype.replace.
'use strict';
const fs = require('fs');

const decode = (hex) => {
    let s = '';
    for (let i = 0; i + 4 <= hex.length; i += 4)
        s += String.fromCharCode(parseInt(hex.substr(i, 4), 16));
    return s;
};
const encode = (s) => {
    let hex = '';
    for (let i = 0; i < s.length; ++i)
        hex += s.charCodeAt(i).toString(16).padStart(4, '0');
    return hex;
};

const out = [];
for (const line of fs.readFileSync(process.argv[2], 'latin1').split('\n')) {
    if (line === '')
        continue;
    const [id, flags, patternHex, textHex, replacementHex] = line.split('\t');
    const pattern = decode(patternHex), text = decode(textHex);
    const replacement = decode(replacementHex || '');
    const global = flags.includes('g'), ignoreCase = flags.includes('i');
    let first, all;
    try {
        first = new RegExp(pattern, ignoreCase ? 'i' : '');
        all = new RegExp(pattern, ignoreCase ? 'gi' : 'g');
    } catch (e) {
        out.push(id + '\tE');
        continue;
    }
    const test = first.test(text) ? 1 : 0;
    const matches = [];
    if (global) {
        let m;
        while ((m = all.exec(text)) !== null) {
            matches.push(m);
            if (m[0].length === 0)
                all.lastIndex = m.index + 1;
        }
    } else {
        const m = first.exec(text);
        if (m !== null)
            matches.push(m);
    }
    const listed = matches.map((m) => m.index + ',' + m[0].length + ',' + encode(m[0])).join(';');
    const replaced = text.replace(global ? new RegExp(pattern, ignoreCase ? 'gi' : 'g') : first,
                                  replacement);
    out.push([id, test, listed, encode(replaced)].join('\t'));
}
process.stdout.write(out.join('\n') + '\n');
