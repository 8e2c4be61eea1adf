// Drives `talvor lsp` as an editor does, with the protocol library VS Code itself uses, over
// the real scripts of the corpus: open, outline, folding, semantic tokens, formatting twice,
// an edit that breaks the script and its fix, a rename there and back, shutdown.
//
//   node client_test.js TALVOR_BINARY CORPUS_DIR
//
// Exits 77 (skipped) when the client library is not installed (scripts/bootstrap does it).
'use strict';

let rpc;
try {
    rpc = require('vscode-languageserver-protocol/node');
} catch (error) {
    console.error('client_test: vscode-languageserver-protocol is not installed; run scripts/bootstrap');
    process.exit(77);
}
const assert = require('node:assert/strict');
const childProcess = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

const [binary, corpus] = process.argv.slice(2);

// Two corpus scripts hold real mistakes of their authors: the number of errors each has.
const knownErrors = { 'mariusjoe__utils_general.vbs': 3, 'wcs__Shared.vbs': 7 };

function lineStarts(text) {
    const starts = [0];
    for (let i = 0; i < text.length; ++i)
        if (text[i] === '\n')
            starts.push(i + 1);
    return starts;
}

function lineText(text, starts, line) {
    const end = line + 1 < starts.length ? starts[line + 1] - 1 : text.length;
    let s = text.slice(starts[line], end);
    return s.endsWith('\r') ? s.slice(0, -1) : s;
}

function applyEdits(text, edits) {
    const starts = lineStarts(text);
    const offset = (p) => Math.min(starts[p.line] + p.character, text.length);
    const sorted = [...edits].sort((a, b) => offset(b.range.start) - offset(a.range.start));
    for (const edit of sorted)
        text = text.slice(0, offset(edit.range.start)) + edit.newText + text.slice(offset(edit.range.end));
    return text;
}

function withoutLeadingBlanks(text) {
    return text.split('\n').map((line) => line.replace(/^[ \t]+/, ''));
}

async function main() {
    const child = childProcess.spawn(binary, ['lsp', '--stdio'], { stdio: ['pipe', 'pipe', 'inherit'] });
    const connection = rpc.createProtocolConnection(new rpc.StreamMessageReader(child.stdout),
                                                    new rpc.StreamMessageWriter(child.stdin));
    // Diagnostics arrive as notifications; each test step waits for the next set of a URI.
    const waiting = new Map();
    connection.onNotification(rpc.PublishDiagnosticsNotification.type, (params) => {
        const resolve = waiting.get(params.uri);
        if (resolve) {
            waiting.delete(params.uri);
            resolve(params.diagnostics);
        }
    });
    const nextDiagnostics = (uri) => new Promise((resolve, reject) => {
        waiting.set(uri, resolve);
        setTimeout(() => reject(new Error(`no diagnostics for ${uri} within 10 s`)), 10000);
    });
    connection.listen();

    // The corpus is in single-byte code pages: the text goes over as Windows-1252.
    const init = await connection.sendRequest(rpc.InitializeRequest.type, {
        processId: process.pid, rootUri: null, capabilities: {},
        initializationOptions: { codePage: 1252 },
    });
    const caps = init.capabilities;
    assert.equal(caps.positionEncoding, 'utf-16');
    assert.equal(caps.textDocumentSync.change, rpc.TextDocumentSyncKind.Incremental);
    assert.ok(caps.renameProvider.prepareProvider);
    const legend = caps.semanticTokensProvider.legend.tokenTypes;
    await connection.sendNotification(rpc.InitializedNotification.type, {});

    const files = fs.readdirSync(corpus).filter((name) => name.endsWith('.vbs')).sort();
    assert.ok(files.length >= 50, `only ${files.length} scripts in ${corpus}`);
    let renamed = 0, formattedLines = 0, tokens = 0;
    for (const [index, name] of files.entries()) {
        const uri = 'file:///corpus/' + encodeURIComponent(name);
        const original = fs.readFileSync(path.join(corpus, name), 'latin1');
        let text = original;
        let version = 1;
        const docId = { uri };
        const diagnostics = nextDiagnostics(uri);
        await connection.sendNotification(rpc.DidOpenTextDocumentNotification.type,
            { textDocument: { uri, languageId: 'vbscript', version, text } });
        const baseline = (await diagnostics).length;
        assert.equal(baseline, knownErrors[name] || 0, `${name}: syntax errors`);
        const starts = lineStarts(text);

        const symbols = await connection.sendRequest(rpc.DocumentSymbolRequest.type, { textDocument: docId });
        for (const symbol of symbols) {
            assert.ok(symbol.range.start.line <= symbol.selectionRange.start.line, `${name}: ${symbol.name}`);
            assert.equal(lineText(text, starts, symbol.selectionRange.start.line)
                .slice(symbol.selectionRange.start.character, symbol.selectionRange.end.character)
                .toLowerCase(), symbol.name.toLowerCase(), `${name}: selection of ${symbol.name}`);
        }
        for (const fold of await connection.sendRequest(rpc.FoldingRangeRequest.type, { textDocument: docId }))
            assert.ok(fold.startLine < fold.endLine && fold.endLine < starts.length, `${name}: fold`);

        // Every token lies inside its line, and comments start where a comment can.
        const data = (await connection.sendRequest(rpc.SemanticTokensRequest.type, { textDocument: docId })).data;
        assert.equal(data.length % 5, 0);
        for (let i = 0, line = 0, column = 0; i < data.length; i += 5) {
            line += data[i];
            column = data[i] === 0 ? column + data[i + 1] : data[i + 1];
            const source = lineText(text, starts, line);
            assert.ok(column + data[i + 2] <= source.length, `${name}:${line + 1}: token past the line`);
            const word = source.slice(column, column + data[i + 2]);
            if (legend[data[i + 3]] === 'comment')
                // The editor's colouring starts a comment at any "rem", as in "removeCab".
                assert.match(word, /^('|rem)/i, `${name}:${line + 1}: comment token '${word}'`);
            if (legend[data[i + 3]] === 'keyword')
                assert.match(word, /^[A-Za-z_][A-Za-z0-9_]*$/, `${name}:${line + 1}: keyword token '${word}'`);
            ++tokens;
        }

        // Formatting changes only leading white space, and a second round changes nothing.
        const options = { tabSize: 4, insertSpaces: true };
        const edits = await connection.sendRequest(rpc.DocumentFormattingRequest.type, { textDocument: docId, options });
        const formatted = applyEdits(text, edits);
        assert.deepEqual(withoutLeadingBlanks(formatted), withoutLeadingBlanks(text), `${name}: formatting`);
        formattedLines += edits.length;
        text = formatted;
        await connection.sendNotification(rpc.DidChangeTextDocumentNotification.type,
            { textDocument: { uri, version: ++version }, contentChanges: [{ text }] });
        assert.deepEqual(await connection.sendRequest(rpc.DocumentFormattingRequest.type,
            { textDocument: docId, options }), [], `${name}: formatting twice`);

        // An unclosed block at the end is reported on its line, and its removal clears it.
        if (index % 8 === 0) {
            const lines = lineStarts(text).length;
            const last = lineText(text, lineStarts(text), lines - 1);
            const end = { line: lines - 1, character: last.length };
            let pending = nextDiagnostics(uri);
            await connection.sendNotification(rpc.DidChangeTextDocumentNotification.type,
                { textDocument: { uri, version: ++version },
                  contentChanges: [{ range: { start: end, end }, text: '\nIf broken Then\n' }] });
            const broken = await pending;
            assert.ok(broken.length > baseline, `${name}: no diagnostic for an unclosed If`);
            pending = nextDiagnostics(uri);
            await connection.sendNotification(rpc.DidChangeTextDocumentNotification.type,
                { textDocument: { uri, version: ++version },
                  contentChanges: [{ range: { start: end, end: { line: lines + 1, character: 0 } }, text: '' }] });
            assert.equal((await pending).length, baseline, `${name}: diagnostics stay after the fix`);
        }

        // A rename of a procedure there and back gives the text back. The engine's name check
        // takes letters and digits only, and refuses the system's names: the first procedure
        // it accepts is taken.
        const candidates = symbols.filter((s) => (s.kind === rpc.SymbolKind.Function ||
            s.kind === rpc.SymbolKind.Method) && /^[A-Za-z][A-Za-z0-9]*$/.test(s.name));
        for (const procedure of candidates) {
            const at = procedure.selectionRange.start;
            const position = { line: at.line, character: at.character };
            const prepared = await connection.sendRequest(rpc.PrepareRenameRequest.type, { textDocument: docId, position });
            assert.equal(prepared.placeholder.toLowerCase(), procedure.name.toLowerCase());
            let there;
            try {
                there = await connection.sendRequest(rpc.RenameRequest.type,
                    { textDocument: docId, position, newName: 'Zq' + prepared.placeholder });
            } catch (error) {
                assert.match(error.message, /^cannot rename: /);
                continue;
            }
            const renamedText = applyEdits(text, there.changes[uri]);
            await connection.sendNotification(rpc.DidChangeTextDocumentNotification.type,
                { textDocument: { uri, version: ++version }, contentChanges: [{ text: renamedText }] });
            const back = await connection.sendRequest(rpc.RenameRequest.type,
                { textDocument: docId, position, newName: prepared.placeholder });
            const edits = back.changes[uri];
            assert.equal(edits.length, there.changes[uri].length, `${name}: rename back`);
            // Names written in another case come back in the case of the new name; compare
            // without case.
            assert.equal(applyEdits(renamedText, edits).toLowerCase(), text.toLowerCase(), `${name}: rename round trip`);
            await assert.rejects(connection.sendRequest(rpc.RenameRequest.type,
                { textDocument: docId, position, newName: 'Dim' }), /cannot rename/);
            text = applyEdits(renamedText, edits);
            ++renamed;
            break;
        }
        await connection.sendNotification(rpc.DidCloseTextDocumentNotification.type, { textDocument: docId });
    }

    assert.ok(renamed >= 20, `only ${renamed} scripts had a procedure to rename`);

    // Bad requests get errors and the server stays up.
    await assert.rejects(connection.sendRequest(rpc.DocumentSymbolRequest.type,
        { textDocument: { uri: 'file:///never/opened.vbs' } }), /not open/);
    await assert.rejects(connection.sendRequest('talvor/noSuchMethod', {}), /not supported/);

    await connection.sendRequest(rpc.ShutdownRequest.type);
    const exited = new Promise((resolve) => child.on('exit', resolve));
    await connection.sendNotification(rpc.ExitNotification.type);
    assert.equal(await exited, 0);
    console.log(`client_test: ${files.length} scripts, ${tokens} tokens, ${formattedLines} lines re-indented, ${renamed} renames there and back`);
    connection.dispose();
}

main().catch((error) => {
    console.error(error);
    process.exit(1);
});
