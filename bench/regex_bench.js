// V8's side of bench/regex_bench.cpp: the same questions on the same texts, timed by Node.
// Input: a file of cases, one a line, tab separated: name, kind ("test", "info" or "replace"),
// flags, text file, then the patterns (asked in turn, one per call). Output, one line per
// case: name and the nanoseconds of one call, the fastest of several rounds, in processor
// time, as the C++ side counts it, so that other work on the machine counts on neither side.
'use strict';
const fs = require('fs');

// The facade's questions, written as a script asks them of RegExp.
const kinds = {
    test: (pattern, flags, text) => new RegExp(pattern, flags).test(text),
    info: (pattern, flags, text) => {
        const re = new RegExp(pattern, flags);
        const found = [];
        let m;
        while ((m = re.exec(text)) !== null) {
            found.push({index: m.index, length: m[0].length, value: m[0]});
            if (m[0].length === 0)
                re.lastIndex = m.index + 1;
            if (!re.global)
                break;
        }
        return found.length;
    },
    replace: (pattern, flags, text) => text.replace(new RegExp(pattern, flags), '').length,
};

function time(ask, patterns, flags, text) {
    let sink = 0;
    // Warm up until the optimising compiler has seen the loop.
    for (let i = 0; i < 20000; ++i)
        sink += Number(ask(patterns[i % patterns.length], flags, text));
    let best = Infinity;
    for (let round = 0; round < 7; ++round) {
        let calls = 0;
        const start = process.cpuUsage();
        let elapsed = 0;
        while (elapsed < 100000) { // 100 ms a round, in microseconds
            for (let i = 0; i < 64; ++i, ++calls)
                sink += Number(ask(patterns[calls % patterns.length], flags, text));
            const used = process.cpuUsage(start);
            elapsed = used.user + used.system;
        }
        best = Math.min(best, elapsed * 1000 / calls);
    }
    return [best, sink];
}

const out = [];
for (const line of fs.readFileSync(process.argv[2], 'utf8').split('\n')) {
    if (line === '')
        continue;
    const [name, kind, flags, textFile, ...patterns] = line.split('\t');
    const text = fs.readFileSync(textFile, 'latin1');
    const [ns] = time(kinds[kind], patterns, flags === '-' ? '' : flags, text);
    out.push(name + '\t' + ns.toFixed(1));
}
process.stdout.write(out.join('\n') + '\n');
