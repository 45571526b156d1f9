// Drives the demonstration page in headless chromium: the document view, the classic form, screenshots.
// Usage: node demo.test.cjs QUORVEL_BINARY WORK_DIR SAMPLES_DIR
'use strict';
const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { startServer } = require('./server.cjs');
const { checkClassicForm, useSamples } = require('./classic_form.cjs');
const { checkDocumentView } = require('./document_view.cjs');

const [quorvel, work, samplesDir] = process.argv.slice(2);
const { chromium } = require(require.resolve('playwright-core', { paths: [work] }));

const waitReady = page => page.waitForFunction(() => document.body.dataset.state === 'ready' && Number(document.body.dataset.renders) > 0);

// Both modes at a small and a wide screen: nothing wider than the window, kept as screenshots.
async function screenshots(page, url) {
  for (const [width, height] of [[800, 600], [1600, 1000]]) {
    await page.setViewportSize({ width, height });
    await page.goto(`${url}?screen=${width}x${height}#document`);  // a new load, in the document view
    await waitReady(page);
    const overflow = await page.evaluate(() => document.documentElement.scrollWidth - window.innerWidth);
    assert.ok(overflow <= 0, `at ${width}x${height} the page is no wider than the window (${overflow} px over)`);
    await page.screenshot({ path: path.join(work, `demo-document-${width}x${height}.png`) });
    await page.click('#mode-classic');
    await page.waitForFunction(() => document.body.dataset.state === 'ready' && document.getElementById('page').dataset.prints);
    await page.screenshot({ path: path.join(work, `demo-classic-${width}x${height}.png`) });
  }
}

async function main() {
  useSamples(samplesDir);
  const server = startServer(quorvel);
  const url = await server.url;
  const userDataDir = fs.mkdtempSync(path.join(os.tmpdir(), 'quorvel-chromium-'));
  let context;
  try {
    context = await chromium.launchPersistentContext(userDataDir, {
      executablePath: '/usr/bin/chromium', headless: true, acceptDownloads: true,
      viewport: { width: 1600, height: 1000 },
      args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
             '--disable-background-networking', '--disable-component-update', '--disable-sync'],
    });
    const page = context.pages()[0] || await context.newPage();
    page.setDefaultTimeout(30000);
    const foreign = [];
    page.on('request', r => { if (!r.url().startsWith(url) && !r.url().startsWith('blob:')) foreign.push(r.url()); });
    const started = Date.now();
    await page.goto(url);
    await waitReady(page);
    console.log(`first picture after ${Date.now() - started} ms`);
    await checkDocumentView(page, { quorvel, work, samplesDir });
    await checkClassicForm(page);
    await screenshots(page, url);
    assert.deepEqual(foreign, [], 'the page fetches nothing from elsewhere');
  } finally {
    if (context) await context.close();
    fs.rmSync(userDataDir, { recursive: true, force: true });
    const stopped = await server.stop();
    fs.writeFileSync(path.join(work, 'demo-server.log'), stopped.output);
    assert.equal(stopped.code, 0, 'the server stops cleanly on SIGTERM:\n' + stopped.output);
  }
  console.log('1 passed, 0 failed');
}

main().catch(error => {
  console.error(error);
  console.log('0 passed, 1 failed');
  process.exit(1);
});
