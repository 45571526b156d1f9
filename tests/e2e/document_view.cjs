// The document view in headless chromium: every sample, paging, zoom, the PDF and ops downloads, editing.
'use strict';
const assert = require('node:assert/strict');
const { execFileSync, spawnSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');
const { expectedTitle, loadSample } = require('./classic_form.cjs');

const TWIPS_PER_PIXEL = 15;
const A4 = { width: 11906, height: 16838 };
const ROLL_WIDTH = 4535;
// The samples in the demonstration's order, with the name of each one's button: no two alike.
const TITLES = [
  ['letterhead', 'Letterhead'], ['voucher', 'Voucher'], ['invoice', 'Invoice'], ['delivery_note', 'Delivery Note'],
  ['delivery_note_long', 'Delivery Note (long descriptions)'], ['receipt', 'Receipt'], ['statement', 'Statement'],
  ['cheque_list', 'Cheque List'],
];

const ready = (page, before) => page.waitForFunction(
  n => Number(document.body.dataset.renders) > n && document.body.dataset.state === 'ready', before);
const renders = page => page.evaluate(() => Number(document.body.dataset.renders));
const shown = page => page.evaluate(() => ({ ...document.getElementById('pages').dataset }));

// The ops file of the document on show, as the server offers it for download, parsed.
async function shownOps(page) {
  const text = await page.evaluate(async () => (await fetch(document.getElementById('download-ops').href)).text());
  return text.trim().split('\n').map(line => JSON.parse(line));
}

// Every page picture in view has loaded, at the size its page has at the shown zoom.
async function checkPictures(page, width) {
  const pictures = await page.$$eval('#pages img', imgs => Promise.all(imgs.map(async img => {
    img.scrollIntoView();  // pages further down load only as they come near
    await img.decode();
    return { natural: img.naturalWidth, width: img.clientWidth, src: img.getAttribute('src') };
  })));
  const zoom = Number((await shown(page)).zoom);
  for (const p of pictures) {
    assert.ok(p.natural > 0, `${p.src} loaded`);
    assert.ok(Math.abs(p.width - Math.round(width / TWIPS_PER_PIXEL * zoom)) <= 1, `${p.src} is ${p.width} px wide at zoom ${zoom}`);
  }
  return pictures;
}

async function pickSample(page, title) {
  const before = await renders(page);
  await page.getByRole('button', { name: title, exact: true }).click();
  await ready(page, before);
}

async function printEverySample(page, samplesDir) {
  const present = TITLES.filter(([name]) => fs.existsSync(path.join(samplesDir, name + '.json')));
  const buttons = await page.$$eval('#sample-list button', bs => bs.map(b => b.textContent));
  assert.deepEqual(buttons.slice(0, present.length), present.map(([, title]) => title), 'one button per sample, each named for it');
  assert.equal(new Set(buttons).size, buttons.length, 'no two sample buttons alike');
  for (const [name, title] of present) {
    await pickSample(page, title);
    const sample = loadSample(name);
    const state = await shown(page);
    const ops = await shownOps(page);
    const pages = ops.filter(op => op.op === 'page').length + 1;
    assert.equal(Number(state.count), pages, `${title}: one picture per page of the printed document`);
    const want = name === 'letterhead' ? sample.company.CompanyName : expectedTitle(name, sample).text;
    assert.ok(ops.some(op => op.op === 'text' && op.text === want), `${title}: the printed pages carry "${want}"`);
    await checkPictures(page, name === 'receipt' ? ROLL_WIDTH : A4.width);
    assert.equal(await page.getAttribute(`#sample-list button[data-sample="${name}"]`, 'aria-pressed'), 'true');
    console.log(`  ${title}: ${pages} page(s), "${want}"`);
  }
}

async function pageThroughInvoice(page) {
  await pickSample(page, 'Invoice');
  await page.click('#page-mode');  // one page at a time
  const count = Number((await shown(page)).count);
  assert.ok(count > 1, 'the invoice sample runs over several pages');
  assert.equal(await page.$$eval('#pages figure', f => f.length), 1);
  for (let k = 2; k <= count; k++) {
    await page.click('#page-next');
    assert.equal(await page.textContent('#page-label'), `Page ${k} of ${count}`);
    const [picture] = await checkPictures(page, A4.width);
    assert.ok(picture.src.endsWith(`/${k}.svg`), `page ${k} shows ${picture.src}`);
  }
  assert.ok(await page.isDisabled('#page-next'), 'no page after the last');
  await page.click('#page-prev');
  assert.equal(await page.textContent('#page-label'), `Page ${count - 1} of ${count}`);
  await page.click('#page-mode');  // all pages again
  assert.equal(await page.$$eval('#pages figure', f => f.length), count);
  console.log(`  paged through ${count} pages`);
  return count;
}

async function checkZoom(page) {
  const fit = Number((await shown(page)).zoom);
  await page.click('#zoom-in');
  const larger = Number((await shown(page)).zoom);
  assert.ok(larger > fit, `zooming in goes from ${fit} to ${larger}`);
  await checkPictures(page, A4.width);
  await page.click('#zoom-out');
  await page.click('#zoom-out');
  const smaller = Number((await shown(page)).zoom);
  assert.ok(smaller < larger, `zooming out goes from ${larger} to ${smaller}`);
  await checkPictures(page, A4.width);
  assert.equal(await page.textContent('#zoom-level'), Math.round(smaller * 100) + '%');
  await page.click('#zoom-fit');
  const width = await page.$eval('#pages', p => p.clientWidth);
  const [picture] = await checkPictures(page, A4.width);
  assert.ok(picture.width <= width, 'at "Fit width" the page fits the view');
  console.log(`  zoom ${fit} -> ${larger} -> ${smaller} -> fit`);
}

async function checkDownloads(page, work, count) {
  const [pdf] = await Promise.all([page.waitForEvent('download'), page.click('#download-pdf')]);
  const pdfPath = path.join(work, 'demo-invoice.pdf');
  await pdf.saveAs(pdfPath);
  const info = execFileSync('pdfinfo', [pdfPath], { encoding: 'utf8' });
  assert.match(info, new RegExp(`^Pages:\\s+${count}$`, 'm'), 'the PDF has the pages on show:\n' + info);
  assert.match(info, /^Page size:\s+595\.\d+ x 841\.\d+ pts \(A4\)/m, 'the PDF pages are A4');
  const [ops] = await Promise.all([page.waitForEvent('download'), page.click('#download-ops')]);
  const opsPath = path.join(work, 'demo-invoice.jsonl');
  await ops.saveAs(opsPath);
  const lines = fs.readFileSync(opsPath, 'utf8').trim().split('\n').map(line => JSON.parse(line));
  assert.equal(lines.filter(op => op.op === 'page').length, count - 1, 'the ops have a page op between pages');
  assert.equal(lines.at(-1).op, 'end');
  console.log(`  downloaded the PDF (${count} pages) and the ops (${lines.length} lines)`);
}

// Edits the invoice in the editor: a changed field reprints; a misspelt one shows the command's error.
async function checkEditing(page, quorvel, work) {
  const original = await page.inputValue('#editor');
  const invoice = JSON.parse(original);
  invoice.document.Billing1 = 'Quillon Mercantile Ltd';
  const before = await renders(page);
  const id = (await shown(page)).document;
  await page.fill('#editor', JSON.stringify(invoice, null, 2));
  await ready(page, before);
  assert.notEqual((await shown(page)).document, id, 'the edit printed a new document');
  // The bill-to block stands at the left margin on every page, its lines led by a space.
  const billed = (await shownOps(page)).filter(op => op.op === 'text' && op.text.trim() === 'Quillon Mercantile Ltd');
  assert.equal(billed.length, Number((await shown(page)).count), 'the edited name is printed on every page');
  assert.ok(billed.every(op => op.x === 1000), 'in the bill-to block at the left margin');
  assert.ok(await page.isHidden('#doc-error'));
  // A wrong field name: the page shows what the command says of the same document.
  invoice.document.Billingg1 = invoice.document.Billing1;
  delete invoice.document.Billing1;
  const wrong = path.join(work, 'wrong-field.json');
  fs.writeFileSync(wrong, JSON.stringify(invoice, null, 2));
  const command = spawnSync(quorvel, ['print', wrong, '-o', path.join(work, 'wrong-field.pdf')], { encoding: 'utf8' });
  assert.notEqual(command.status, 0);
  const again = await renders(page);
  await page.fill('#editor', JSON.stringify(invoice, null, 2));
  await ready(page, again);
  assert.ok(await page.isVisible('#doc-error'), 'the error is shown');
  assert.equal(await page.textContent('#doc-error'), command.stderr.trim());
  assert.ok((await page.textContent('#doc-error')).includes('Billingg1'));
  assert.equal(await page.getAttribute('#editor', 'aria-invalid'), 'true');
  console.log(`  error shown: ${command.stderr.trim()}`);
  const back = await renders(page);
  await page.fill('#editor', original);
  await ready(page, back);
  assert.ok(await page.isHidden('#doc-error'), 'the error goes when the document is right again');
}

// The sample buttons are reached with Tab and pressed with Enter.
async function checkKeyboard(page) {
  await page.focus('#mode-document');
  let reached = false;
  for (let i = 0; i < 20 && !reached; i++) {
    await page.keyboard.press('Tab');
    reached = await page.evaluate(() => document.activeElement.dataset.sample === 'voucher');
  }
  assert.ok(reached, 'Tab reaches the Voucher sample');
  const before = await renders(page);
  await page.keyboard.press('Enter');
  await ready(page, before);
  assert.equal(await page.getAttribute('#sample-list button[data-sample="voucher"]', 'aria-pressed'), 'true');
  console.log('  keyboard: Tab to "Voucher", Enter prints it');
}

async function checkDocumentView(page, { quorvel, work, samplesDir }) {
  console.log('samples:'); await printEverySample(page, samplesDir);
  console.log('paging:'); const count = await pageThroughInvoice(page);
  console.log('zoom:'); await checkZoom(page);
  console.log('downloads:'); await checkDownloads(page, work, count);
  console.log('editing:'); await checkEditing(page, quorvel, work);
  console.log('keyboard:'); await checkKeyboard(page);
}

module.exports = { checkDocumentView };
