// The page in a real browser, before a real daemon:  page_test.mjs SOURCE ADDRESS [FOLDER FOR PICTURES]
import assert from 'node:assert/strict';
import {execFileSync} from 'node:child_process';
import {pathToFileURL} from 'node:url';

const [source, address, pictures] = process.argv.slice(2);
const {chromium} = (await import(pathToFileURL(`${source}/.cache/browser-driver/index.js`))).default;
const kobctl = (...words) => execFileSync('kobctl', words, {encoding: 'utf8'}).trim();
const browser = await chromium.launch({executablePath: execFileSync('sh', ['-c', 'command -v chromium'], {encoding: 'utf8'}).trim(), args: ['--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage']});
const context = await browser.newContext({viewport: {width: 1400, height: 740}, colorScheme: 'light'});
context.setDefaultTimeout(10000);
const page = await context.newPage();
const complaints = [];
page.on('console', (message) => message.type() === 'error' && complaints.push(message.text()));
page.on('pageerror', (error) => complaints.push(error.message));

const open = (view) => page.click(`nav a[href="#${view}"]`);
const search = async (words) => {
  await page.fill('#search', words);
  await page.locator('#objects[aria-busy=false]').waitFor();
};
const entry = (name) => page.locator(`details[data-name="${name}"]`);
const isWide = () => page.evaluate(() => document.documentElement.scrollWidth > innerWidth);
const picture = (name) => pictures && page.screenshot({path: `${pictures}/${name}.png`});
// The next answer from there comes when the function that this returns is called.
const hold = (address, method = 'GET') => {
  let release;
  const held = new Promise((resolve) => { release = resolve; });
  let later;
  const made = new Promise((resolve) => {
    later = new Promise((done) => {
      let taken = false;
      page.route(address, async (route) => {
        if (taken || route.request().method() !== method) return route.fallback();
        taken = true;
        const response = await route.fetch();
        resolve();
        await held;
        await route.fulfill({response});
        done();
      });
    });
  });
  return Object.assign(() => { release(); return later; }, {made});
};
const steps = [];
const step = (name, run) => steps.push([name, run]);

step('the token leaves the address, and the router is there, with what has changed meanwhile', async () => {
  const later = hold(/describe=0/);
  await page.goto(address);
  await later.made;
  kobctl('set', 'webHttpEnable=0');
  await later();
  await page.locator('#state.up').waitFor();
  await entry('webHttpEnable').locator('summary .value', {hasText: '0'}).waitFor();
  assert.equal(new URL(page.url()).hash, '');
});

step('a search by name or meaning finds an object', async () => {
  await search('tcp port http');
  assert.equal(await entry('webHttpPort').locator('summary .value').innerText(), '80');
  assert.equal(await entry('IMEI').count(), 0);
});

step('with the keyboard alone, a value is refused with the reason, then set', async () => {
  await entry('webHttpPort').locator('summary').focus();
  await page.keyboard.press('Enter');
  await page.keyboard.press('Tab');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('70000');
  await page.keyboard.press('Enter');
  await entry('webHttpPort').locator('.wrong', {hasText: 'an integer from 1 to 65535'}).waitFor();
  assert.equal(kobctl('get', 'webHttpPort'), '80');
  await page.keyboard.press('Control+A');
  await page.keyboard.type('8080');
  await page.keyboard.press('Enter');
  await entry('webHttpPort').locator('.done', {hasText: 'Set.'}).waitFor();
  assert.equal(kobctl('get', 'webHttpPort'), '8080');
  assert.equal(await entry('webHttpPort').locator('.wrong').first().innerText(), '');
});

step('what kobctl changes is announced with both values, and shown in place', async () => {
  kobctl('set', 'webHttpPort=8088');
  await page.locator('#live li', {hasText: '"8080" → "8088" by kobctl'}).waitFor();
  await entry('webHttpPort').locator('summary .value', {hasText: '8088'}).waitFor();
  kobctl('sim', 'set', '--announce', 'webHttpPort=8087');  // what kobctl has set before is no longer its value
  await page.locator('#live li', {hasText: '"8088" → "8087"'}).waitFor();
  kobctl('sim', 'clear');
});

step('a text that looks like HTML stays a text', async () => {
  kobctl('sim', 'set', '--announce', 'systemProductModel=<img src=x onerror=alert(1)>');
  await page.locator('#live li', {hasText: '<img src=x'}).waitFor();
  kobctl('sim', 'clear');
});

step('a row is refused, added, changed by another program, deleted', async () => {
  // The first table is read slowly: its rows come after those of the table that was chosen then, and are not shown.
  let late;
  const held = new Promise((resolve) => { late = resolve; });
  await page.route(/api.tables.\w+$/, async (route) => { await held; await route.continue(); }, {times: 1});
  await open('tables');
  const first = page.waitForResponse((answer) => /api.tables.\w+$/.test(answer.url()) && !answer.url().endsWith('/FwUrlFilterTable'));
  await page.selectOption('#table', 'FwUrlFilterTable');
  await page.locator('text=Add a row').waitFor();
  late();
  await (await first).finished();
  await page.click('text=Add a row');
  await page.getByLabel('URL', {exact: true}).fill('192.168.1.1');
  await page.click('.row-form button.main');
  await page.locator('.row-form .wrong', {hasText: 'the new row was deleted again'}).waitFor();
  await page.getByLabel('URL', {exact: true}).fill('example.com');
  await page.click('.row-form button.main');
  await page.locator('#rows td', {hasText: 'example.com'}).waitFor();
  const index = await page.locator('#rows tbody td').first().innerText();
  await page.getByLabel(`Edit row ${index}`).click();
  await page.getByLabel('URL', {exact: true}).fill('example.net');
  kobctl('table', 'set', 'FwUrlFilterTable', index, 'URL=example.org');
  await page.locator('#rows td', {hasText: 'example.org'}).waitFor();
  assert.equal(await page.getByLabel('URL', {exact: true}).inputValue(), 'example.net');
  await page.click('text=Leave');
  for (const text of ['Delete', 'Really?']) await page.getByLabel(`Delete row ${index}`).and(page.getByText(text)).click();
  await page.locator('#rows', {hasText: '0 of at most'}).waitFor();
  assert.equal(kobctl('table', 'dump', '--json', 'FwUrlFilterTable').includes('example'), false);
});

step('a click hits the row that was meant, and does its work once', async () => {
  const [first, second] = ['a.example', 'b.example'].map((url) => kobctl('table', 'add', 'FwUrlFilterTable', `URL=${url}`));
  await page.getByLabel(`Edit row ${second}`).focus();
  kobctl('table', 'set', 'FwUrlFilterTable', first, 'URL=c.example');
  await page.locator('#rows td', {hasText: 'c.example'}).waitFor();
  assert.equal(await page.evaluate(() => document.activeElement.getAttribute('aria-label')), `Edit row ${second}`);
  await page.getByLabel(`Delete row ${first}`).dblclick();
  await page.click('text=Add a row');
  await page.getByLabel('URL', {exact: true}).fill('d.example');
  const later = hold(/api.tables.FwUrlFilterTable$/, 'POST');
  for (let i = 0; i < 2; ++i) await page.click('.row-form button.main');
  await later();
  await page.locator('#rows td', {hasText: 'd.example'}).waitFor();
  const other = hold(/api.tables.PortRedirectTable$/);
  await page.selectOption('#table', 'PortRedirectTable');
  await page.locator('#rows[inert] td', {hasText: 'd.example'}).waitFor();
  await other();
  await page.locator('#rows:not([inert])', {hasText: '0 of at most'}).waitFor();
  kobctl('table', 'add', 'FwPortForwardTable');  // another name of the same rows
  await page.locator('#rows', {hasText: '1 of at most'}).waitFor();
  assert.equal(kobctl('table', 'dump', '--json', 'FwUrlFilterTable').match(/\w.example/g).join(), 'c.example,b.example,d.example');
});

step('the empty field of a secret leaves it as it is', async () => {
  kobctl('set', 'networkDdnsPassword=abcdef');
  await page.selectOption('#table', 'usersTable');
  await page.getByLabel('Edit row 1').click();
  assert.equal(await page.getByLabel('Password', {exact: true}).inputValue(), '');
  await page.click('.row-form button.main');
  await page.locator('.row-form .wrong', {hasText: 'Nothing has changed.'}).waitFor();
  await open('values');
  await search('networkDdnsPassword');
  await entry('networkDdnsPassword').locator('summary').click();
  await entry('networkDdnsPassword').locator('button.main').click();
  await entry('networkDdnsPassword').locator('.wrong', {hasText: 'Type a value.'}).waitFor();
  assert.equal(kobctl('get', 'networkDdnsPassword'), 'abcdef');
});

step('what is newer stays: a change before a late answer, and what is typed; a tab that was hidden catches up', async () => {
  const value = (text) => entry('webHttpPort').locator('summary .value', {hasText: text}).waitFor();
  const hide = (hidden) => page.evaluate((is) => {
    Object.defineProperty(document, 'hidden', {value: is, configurable: true});
    document.dispatchEvent(new Event('visibilitychange'));
  }, hidden);
  await search('webHttpPort');
  await entry('webHttpPort').locator('summary').click();
  const field = entry('webHttpPort').getByLabel('New value');
  await field.fill('8201');
  const later = hold(/api.objects.webHttpPort$/, 'PUT');
  await entry('webHttpPort').locator('button.main').click();
  await value('8201');
  kobctl('set', 'webHttpPort=8202');
  await value('8202');
  await later();
  await entry('webHttpPort').locator('.done', {hasText: 'Set.'}).waitFor();
  await value('8202');
  await field.fill('8203');
  await page.click('#live-title');
  await hide(true);
  kobctl('set', 'webHttpPort=8088');
  await hide(false);
  await value('8088');
  assert.equal(await field.inputValue(), '8203');
  assert.equal(await page.locator('#live li', {hasText: '→ "8088"'}).count(), 1);
});

step('a fading signal is plotted, and the scenario stopped', async () => {
  await open('plots');
  await page.fill('#plot-name', 'noSuchObject');
  await page.keyboard.press('Enter');
  await page.locator('#plot-form .wrong', {hasText: 'no object noSuchObject'}).waitFor();
  for (const name of ['RSRP', 'SINR']) {
    await page.fill('#plot-name', name);
    await page.keyboard.press('Enter');
  }
  await open('simulator');
  await page.click('[data-scenario=signal-fade]');
  await page.locator('#playing', {hasText: 'signal-fade plays: over 20s RSRP'}).waitFor();
  await open('plots');
  const now = page.locator('.chart[data-name=RSRP] .value');
  const first = Number((await now.innerText()).split(' ')[0]);
  await page.waitForFunction((before) => parseFloat(document.querySelector('.chart .value').textContent) < before - 5, first);
  assert.ok(await page.locator('.chart[data-name=RSRP] canvas').isVisible());
  await open('values');
  await search('http');
  await entry('webHttpPort').locator('summary').click();
  await entry('webHttpPort').getByLabel('New value').fill('70000');
  await entry('webHttpPort').locator('button.main').click();
  await entry('webHttpPort').locator('.wrong', {hasText: 'it takes'}).waitFor();
  assert.equal(await isWide(), false);
  await picture('page-light');
  await page.emulateMedia({colorScheme: 'dark'});
  await page.setViewportSize({width: 400, height: 800});
  for (const view of ['values', 'tables', 'simulator', 'history', 'plots']) {
    await open(view);
    assert.equal(await isWide(), false, `${view} is wider than 400 pixels`);
  }
  if (pictures) await page.waitForTimeout(9000);
  await picture('page-narrow-dark');
  await open('simulator');
  await page.click('text=Stop');
  await page.locator('#playing', {hasText: 'what it has simulated is cleared'}).waitFor();
});

step('the history shows who changed what, and a change is undone', async () => {
  kobctl('set', 'webHttpPort=8089');
  await open('history');
  await page.locator('#changes tr', {hasText: '80888089kobctl'}).waitFor();
  await page.click('#undo');
  await page.locator('#undone', {hasText: 'As before: webHttpPort'}).waitFor();
  assert.equal(kobctl('get', 'webHttpPort'), '8088');
  const later = hold(/api.history/);  // what is shown from here on is no longer the newest
  await page.click('#again');
  await later.made;
  kobctl('set', 'webLanguage=es');
  for (const text of ['Undo', 'Really?']) await page.locator('#changes tr').first().getByText(text).click();
  await page.locator('#not-undone', {hasText: 'nothing was taken back'}).waitFor();
  await later();
  await page.locator('#changes tr', {hasText: 'webLanguage'}).waitFor();
  assert.equal(kobctl('get', 'webHttpPort', 'webLanguage'), 'webHttpPort=8088\nwebLanguage=es');
});

step('a tab without the token asks for it, and takes it from its address', async () => {
  const other = await context.newPage();
  await other.goto(new URL(address).origin);
  await other.getByLabel('Address or token').fill(address);
  await other.keyboard.press('Enter');
  await other.locator('#state.up').waitFor();
  await other.evaluate(() => sessionStorage.clear());
  await other.reload();
  await other.goto(address);
  await other.locator('#state.up').waitFor();
  assert.equal(new URL(other.url()).hash, '');
  await other.close();
});

let failed = 0;
for (const [name, run] of steps) {
  try {
    await run();
  } catch (error) {
    ++failed;
    console.error(`FAILED: ${name}\n${error.stack}`);
  }
}
// A refused request is no fault of the page, but the browser's console names it.
const faults = complaints.filter((text) => !/status of (422|409)/.test(text));
if (faults.length > 0) console.error(`FAILED: the browser complains: ${faults.join('\n')}`);
await browser.close();
process.exit(failed + faults.length > 0 ? 1 : 0);
