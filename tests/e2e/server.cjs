// Starts `quorvel demo --serve` on a free port for the browser test and stops it with SIGTERM.
'use strict';
const { spawn } = require('node:child_process');

function startServer(quorvel) {
  const child = spawn(quorvel, ['demo', '--serve', '--port', '0'], { stdio: ['ignore', 'pipe', 'pipe'] });
  let output = '';
  const exited = new Promise(resolve => child.on('exit', (code, signal) => resolve({ code, signal })));
  const url = new Promise((resolve, reject) => {
    const timer = setTimeout(() => reject(new Error('the server did not start:\n' + output)), 15000);
    const take = chunk => {
      output += chunk;
      const found = output.match(/http:\/\/127\.0\.0\.1:\d+\//);
      if (found) { clearTimeout(timer); resolve(found[0]); }
    };
    child.stdout.on('data', take);
    child.stderr.on('data', take);
    exited.then(() => reject(new Error('the server exited:\n' + output)));
  });
  const stop = async () => {
    child.kill('SIGTERM');
    const timer = setTimeout(() => child.kill('SIGKILL'), 10000);
    const result = await exited;
    clearTimeout(timer);
    return { ...result, output };
  };
  return { url, stop };
}

module.exports = { startServer };
