// SPDX-License-Identifier: MIT
// Drives the set-up page in Chromium as a person with a phone does, against wlansetup and a stand-in for wlanctl, and
// against the real one on the virtual camera.
// usage: node page_test.mjs SOURCE_FOLDER BUILD_FOLDER [IMAGES_FOLDER]

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import net from 'node:net';
import os from 'node:os';
import path from 'node:path';
import { chromium } from 'playwright-core';

const [source, build, images] = process.argv.slice(2).map((folder) => folder && path.resolve(folder));
const wlansetup = path.join(build, 'tools/wlansetup/wlansetup');
const standIn = path.join(source, 'tests/support/wlanctl_stand_in');
const openapiFile = path.join(source, 'tools/wlansetup/openapi.json');
const require = createRequire(import.meta.url);
const axe = fs.readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');
const Ajv = require('ajv/dist/2020.js');

const phone = { viewport: { width: 390, height: 844 }, deviceScaleFactor: 1 };
const hex = (text) => Buffer.from(text).toString('hex');
const html = '<img src=x onerror=alert(1)>';
const strange = Buffer.from(Array.from({ length: 32 }, (_, i) => 0xe0 + i));
const strangeName = Array.from(strange, (byte) => '\\x' + byte.toString(16)).join('');

// name, key, strength, security, and what else the survey says
const air = [
  ['Office', 'correct horse', 92, 'WPA2-PSK AES'],
  ['Visitors', '-', 64, 'OPEN'],
  ['Werkstatt Süd', 'schraubstock 12', 48, 'WPA-PSK/WPA2-PSK AES'],
  ['old-printer', '12345', 30, 'WEP'],
  [html, 'html html', 55, 'WPA2-PSK AES'],
  [strange, 'bytes bytes', 20, 'WPA2-PSK AES'],
  ['Lager', 'versteckt', 50, 'WPA2-PSK AES', { hidden: true }],
];

// For the pictures.
const neighbours = [air[0], air[1], air[2], ['Müller-WLAN', 'x', 66, 'WPA2-PSK AES'], ['garden', 'x', 33, 'WPA2-PSK AES'],
  ['HP-Print-4F-LaserJet', '-', 22, 'OPEN'], air[3]];

function airLine([name, key, percent, security, more]) {
  const shown = Buffer.isBuffer(name) ? strangeName : name;
  return `${hex(name)}\t${key}\t` + JSON.stringify({ name: shown, bssid: '02:00:00:00:00:01', channel: 6,
    band: '2.4 GHz', security, signal_percent: percent, ...more }).replaceAll('":', '": ') + '\n';
}

async function freePort() {
  const server = net.createServer();
  await new Promise((done) => server.listen(0, '127.0.0.1', done));
  const { port } = server.address();
  await new Promise((done) => server.close(done));
  return port;
}

/// A camera with its program, and browsers on its access point.
class Camera {
  wlanctl = standIn;
  command = () => [wlansetup];

  constructor() {
    this.folder = fs.mkdtempSync(path.join(os.tmpdir(), 'page-test-'));
    this.browsers = [];
    this.complaints = [];
    this.write('pace', '0.05');
    this.write('air', air.map(airLine).join(''));
  }

  write(file, text) { fs.writeFileSync(path.join(this.folder, file), text); }
  remove(file) { fs.rmSync(path.join(this.folder, file), { force: true }); }
  read(file) {
    const place = path.join(this.folder, file);
    return fs.existsSync(place) ? fs.readFileSync(place, 'utf8') : '';
  }

  async start(...options) {
    this.port ??= await freePort();
    this.url = `http://127.0.0.1:${this.port}/`;
    this.log = '';
    const [program, ...words] = this.command();
    this.program = spawn(program, [...words, '--port', this.port, '--retry', '0', '--check', '1',
      ...(options.includes('--shown') ? [] : ['--shown', '2']), ...options],
      { env: { ...process.env, STAND_IN: this.folder, WLANCTL: this.wlanctl } });
    this.program.stderr.on('data', (text) => { this.log += text; });
    this.ended = new Promise((done) => this.program.on('exit', done));
  }

  async stop() {
    for (const browser of this.browsers) await browser.close();
    this.program.kill('SIGTERM');
    assert.equal(await this.ended, 0, 'wlansetup ended by itself:\n' + this.log);
    fs.rmSync(this.folder, { recursive: true });
  }

  /// A browser of its own that shows the page.
  async browse(options = phone) {
    const context = await chromiumProcess.newContext(options);
    this.browsers.push(context);
    const page = await context.newPage();
    page.setDefaultTimeout(Number(process.env.PATIENCE ?? 30000));
    page.on('console', (message) => {
      if (['error', 'warning'].includes(message.type())) this.complaints.push(message.text());
    });
    page.on('pageerror', (error) => this.complaints.push(String(error)));
    page.on('request', (request) => {
      if (!request.url().startsWith(this.url) && !request.url().startsWith('data:'))
        this.complaints.push('asked for ' + request.url());
    });
    for (let tries = 0; ; ++tries) {
      try {
        await page.goto(this.url);
        break;
      } catch (error) { // the access point is not up yet
        if (tries > 200) throw error;
        await new Promise((done) => setTimeout(done, 50));
      }
    }
    await page.getByRole('button', { name: /[aA]nother network/ }).waitFor();
    return page;
  }

  async accessPointGoes() {
    for (let tries = 0; fs.existsSync(path.join(this.folder, 'access_point')); ++tries) {
      assert.ok(tries < 400, 'the access point is still there:\n' + this.log);
      await new Promise((done) => setTimeout(done, 50));
    }
  }
}

/// The same with the real wlanctl, on the virtual camera.
class VirtualCamera extends Camera {
  wlanctl = path.join(build, 'tools/wlanctl/wlanctl');
  command = () => [path.join(build, 'vcamera/vcamera'), '--fresh', '--scratch', path.join(this.folder, 'camera'),
    '--speed', '10', '--scene', path.join(source, 'vcamera/scenes', this.scene), '--', wlansetup,
    '--address', '127.0.0.1'];

  constructor(scene) {
    super();
    this.scene = scene;
  }
}

const heading = (page, text) => page.getByRole('heading', { level: 1, name: text }).waitFor();
const network = (page, name) => page.getByRole('button', { name, exact: false });

async function join(page, name, key) {
  await network(page, name).click();
  if (key) await page.getByLabel('Key', { exact: true }).fill(key);
  await page.getByRole('button', { name: 'Connect', exact: true }).click();
}

async function checkAccess(page, where) {
  await page.evaluate(axe);
  const { violations } = await page.evaluate(() => window.axe.run(document, { resultTypes: ['violations'] }));
  assert.deepEqual(violations.map(({ id, nodes }) => [id, nodes.map((node) => node.html)]), [], where);
}

async function picture(page, name) {
  if (images) await page.screenshot({ path: path.join(images, name + '.png'), animations: 'disabled' });
}

const tests = {
  async 'joins a chosen network'(camera) {
    const page = await camera.browse();
    await join(page, 'Office', 'correct horse');
    await heading(page, 'Dome 2 is connected');
    await page.getByRole('link', { name: '192.168.7.20' }).waitFor();
    await camera.accessPointGoes();
    assert.equal(camera.read('stored'), `${hex('Office')} correct horse\n`);
    assert.ok(!camera.read('log').includes('correct horse') && !camera.log.includes('correct horse'), 'key in a log');
  },

  async 'takes the right key after a wrong one'(camera) {
    const page = await camera.browse();
    await join(page, 'Office', 'wrong horse');
    await page.getByText('The key is not right').waitFor();
    await page.getByText('Office was not joined').waitFor();
    assert.equal(await page.getByLabel('Key', { exact: true }).inputValue(), 'wrong horse', 'the form as it was');
    assert.equal(camera.read('stored'), '');
    assert.ok(fs.existsSync(path.join(camera.folder, 'access_point')));
    await page.getByLabel('Key', { exact: true }).fill('correct horse');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await heading(page, 'Dome 2 is connected');
  },

  async 'checks the key as it is typed'(camera) {
    const page = await camera.browse();
    await network(page, 'Office').click();
    const key = page.getByLabel('Key', { exact: true });
    for (const [typed, hint] of [['', '8 to 63 characters'], ['1234567', '7 of at least 8'], ['12345678', 'fits'],
      ['ä'.repeat(4), 'fits'], ['x'.repeat(63), 'fits'], ['x'.repeat(64), 'Too long'], ['a0'.repeat(32), 'fits'],
      ['a0'.repeat(33), 'Too long']]) {
      await key.fill(typed);
      assert.match(await page.locator('#key-hint').textContent(), new RegExp(hint), typed);
    }
    await key.fill('short');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText('A key has 8 to 63 characters').waitFor();
    assert.equal(await key.getAttribute('aria-invalid'), 'true');
    assert.ok(!camera.read('log').includes('join'), 'asked the radio with a key that cannot be');
    await page.getByRole('button', { name: 'Show' }).click();
    assert.equal(await key.getAttribute('type'), 'text');
  },

  async 'joins a hidden network'(camera) {
    const page = await camera.browse();
    assert.equal(await network(page, 'Lager').count(), 0);
    await network(page, 'Another network').click();
    await page.getByLabel('Name of the network').fill('Lager');
    await page.getByLabel('Key (leave empty').fill('versteckt');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await heading(page, 'Dome 2 is connected');
    assert.equal(camera.read('stored'), `${hex('Lager')} versteckt\n`);
  },

  async 'says that a network is not heard'(camera) {
    const page = await camera.browse();
    await network(page, 'Another network').click();
    await page.getByLabel('Name of the network').fill('Nobody');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText('The network was not heard').waitFor();
    await page.getByText('Nobody was not joined').waitFor();
  },

  async 'joins an open network, with a warning'(camera) {
    const page = await camera.browse();
    await network(page, 'Visitors').click();
    await page.getByText('This network is open').waitFor();
    assert.equal(await page.getByLabel('Key', { exact: true }).isVisible(), false);
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await heading(page, 'Dome 2 is connected');
  },

  async 'shows names as text only'(camera) {
    const page = await camera.browse();
    assert.equal(await page.locator('img').count(), 0);
    await join(page, html, 'wrong key!');
    await page.getByText(html + ' was not joined').waitFor();
    assert.equal(await page.locator('img').count(), 0);
    await page.getByLabel('Key', { exact: true }).fill('html html');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText(`It is on the network ${html}.`).waitFor();
    assert.equal(await page.locator('img').count(), 0);
  },

  async 'joins a name of 32 bytes that are no text'(camera) {
    const page = await camera.browse({ ...phone, viewport: { width: 320, height: 640 } });
    await checkAccess(page, 'strange names');
    assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), 'too wide');
    await join(page, strangeName, 'bytes bytes');
    await heading(page, 'Dome 2 is connected');
    assert.equal(camera.read('stored'), `${strange.toString('hex')} bytes bytes\n`);
  },

  async 'joins by the router\'s button'(camera) {
    camera.write('button', `${hex('Werkstatt Süd')} schraubstock 12\n`);
    camera.write('pace', '0.3');
    const page = await camera.browse();
    await page.getByRole('button', { name: 'Use the router' }).click();
    await heading(page, 'Press the router');
    await heading(page, 'Dome 2 is connected');
    await page.getByText('It is on the network Werkstatt Süd').waitFor();
  },

  async 'says that no button was pressed'(camera) {
    const page = await camera.browse();
    await page.getByRole('button', { name: 'Use the router' }).click();
    await page.getByText('It took too long').waitFor();
  },

  async 'offers no button where there is none'(camera) {
    camera.write('realtek', '');
    const page = await camera.browse();
    assert.equal(await page.getByRole('button', { name: 'Use the router' }).isVisible(), false);
  },

  async 'keeps what is typed while the list changes'(camera) {
    const page = await camera.browse();
    await network(page, 'old-printer').click();
    await page.getByLabel('Key', { exact: true }).pressSequentially('123');
    camera.write('air', [air[0], ['Newcomer', 'new', 99, 'WPA2-PSK AES']].map(airLine).join(''));
    await page.evaluate(() => fetch('/api/survey', { method: 'POST', body: '{}',
      headers: { 'Content-Type': 'application/json' } }));
    await network(page, 'Newcomer').waitFor();
    assert.equal(await network(page, 'Visitors').count(), 0);
    assert.equal(await page.evaluate(() => document.activeElement.id), 'key');
    assert.equal(await page.getByLabel('Key', { exact: true }).inputValue(), '123');
    await page.keyboard.press('Escape');
    assert.equal(await network(page, 'old-printer').count(), 0, 'gone once its form is closed');
  },

  async 'tells that the network vanished'(camera) {
    const page = await camera.browse();
    camera.write('air', air.slice(1).map(airLine).join(''));
    await join(page, 'Office', 'correct horse');
    await page.getByText('The network was not heard').waitFor();
  },

  async 'shows two phones the same'(camera) {
    camera.write('pace', '0.3');
    const [one, two] = [await camera.browse(), await camera.browse()];
    await network(two, 'Visitors').click();
    await join(one, 'Office', 'wrong horse');
    await heading(two, 'Connecting to Office');
    for (const page of [one, two]) await page.getByText('The key is not right').waitFor();
    assert.equal(await network(two, 'Visitors').getAttribute('aria-expanded'), 'true', 'the other form stays open');
    await one.getByLabel('Key', { exact: true }).fill('correct horse');
    await one.getByRole('button', { name: 'Connect', exact: true }).click();
    for (const page of [one, two]) await heading(page, 'Dome 2 is connected');
  },

  async 'goes on after a reload'(camera) {
    camera.write('pace', '0.5');
    const page = await camera.browse();
    await join(page, 'Office', 'wrong horse');
    await heading(page, 'Connecting to Office');
    await page.reload();
    await heading(page, 'Connecting to Office');
    await page.getByText('The key is not right').waitFor();
    await page.reload();
    await page.getByText('The key is not right').waitFor();
    assert.equal(await network(page, 'Office').getAttribute('aria-expanded'), 'true');
  },

  async 'needs a keyboard alone'(camera) {
    const page = await camera.browse();
    const focused = () => page.evaluate(() => document.activeElement === document.body ? '' :
      document.activeElement.textContent || document.activeElement.id);
    await network(page, 'Office').waitFor();
    const tabTo = async (text) => {
      for (let steps = 0; !(await focused()).includes(text); ++steps) {
        assert.ok(steps < 30, text + ' is never focused');
        await page.keyboard.press('Tab');
      }
    };
    await tabTo('Office');
    await page.keyboard.press('Enter');
    await page.keyboard.type('wrong horse');
    await page.keyboard.press('Enter');
    await page.getByText('The key is not right').waitFor();
    assert.equal(await focused(), 'key', 'the key is where one goes on');
    await page.keyboard.press('Control+A');
    await page.keyboard.type('correct horse');
    await page.keyboard.press('Enter');
    await heading(page, 'Dome 2 is connected');
  },

  async 'finds the camera again'(camera) {
    const page = await camera.browse();
    await network(page, 'Office').click();
    await page.getByLabel('Key', { exact: true }).fill('correct');
    camera.program.kill('SIGTERM');
    await camera.ended;
    await page.getByText('Looking for the camera').waitFor();
    camera.complaints.length = 0; // the browser tells of the connection that ended
    await camera.start();
    await page.getByText('Looking for the camera').waitFor({ state: 'hidden' });
    assert.equal(await page.getByLabel('Key', { exact: true }).inputValue(), 'correct');
    camera.complaints = camera.complaints.filter((text) => !/ERR_(CONNECTION|INCOMPLETE)/.test(text));
  },

  async 'asks for the code on the label'(camera) {
    camera.program.kill('SIGTERM');
    await camera.ended;
    await camera.start('--code', '4711');
    const page = await camera.browse();
    await network(page, 'Visitors').click();
    await page.getByLabel('Set-up code').fill('0815');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText('That is not the code').waitFor();
    await page.getByLabel('Set-up code').fill('4711');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText('Try again in').waitFor();
    await page.waitForTimeout(1100);
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await heading(page, 'Dome 2 is connected');
    assert.ok(camera.complaints.every((text) => / 4(03|29) /.test(text)));
    camera.complaints.length = 0;
  },

  async 'is remembered or says that it is not'(camera) {
    camera.write('store_fails', '');
    const page = await camera.browse();
    await join(page, 'Office', 'correct horse');
    await page.getByText('could not remember it').waitFor();
    assert.ok(fs.existsSync(path.join(camera.folder, 'access_point')));
  },

  async 'changes the network at its new address'(camera) {
    camera.write('address', '127.0.0.2');
    camera.write('stored', `${hex('Office')} correct horse\n`);
    camera.program.kill('SIGTERM');
    await camera.ended;
    await camera.start('--keep-page');
    camera.url = `http://127.0.0.2:${camera.port}/`;
    const page = await camera.browse();
    await heading(page, 'Dome 2 is connected');
    await page.getByText('It is on the network Office').waitFor();
    await checkAccess(page, 'connected');
    await page.getByRole('button', { name: 'Choose another network' }).click();
    await page.getByRole('button', { name: 'Search again' }).click();
    await join(page, 'Werkstatt', 'wrong wrong');
    await page.getByText('The key is not right').waitFor();
    await page.getByLabel('Key', { exact: true }).fill('schraubstock 12');
    await page.getByRole('button', { name: 'Connect', exact: true }).click();
    await page.getByText('It is on the network Werkstatt Süd').waitFor();
    assert.equal(camera.read('stored'), `${hex('Werkstatt Süd')} schraubstock 12\n`);
    assert.ok(!fs.existsSync(path.join(camera.folder, 'access_point')), 'there was an access point');
  },

  async 'comes back when the network is gone for good'(camera) {
    camera.program.kill('SIGTERM');
    await camera.ended;
    camera.write('stored', `${hex('Office')} correct horse\n`);
    await camera.start('--lost', '0');
    for (let tries = 0; !camera.log.includes('connected'); ++tries) {
      assert.ok(tries < 200, camera.log);
      await new Promise((done) => setTimeout(done, 50));
    }
    camera.write('air', air.slice(1).map(airLine).join(''));
    await camera.browse();
    assert.ok(camera.read('access_point') === '' && fs.existsSync(path.join(camera.folder, 'access_point')));
  },

  async 'answers as the OpenAPI file says'(camera) {
    const api = JSON.parse(fs.readFileSync(openapiFile, 'utf8'));
    const ajv = new Ajv({ strict: false, allErrors: true });
    ajv.addSchema(api, 'api');
    const pointer = (text) => text.replaceAll('~', '~0').replaceAll('/', '~1');
    const ask = async (route, method, body) => {
      const response = await fetch(camera.url + route.slice(1), method === 'get' ? {} :
        { method: 'POST', body, headers: { 'Content-Type': 'application/json' } });
      const answer = await response.json();
      const place = `api#/paths/${pointer(route)}/${method}/responses/${response.status}/content/application~1json/schema`;
      const validate = ajv.getSchema(place);
      assert.ok(validate, `${method} ${route}: ${response.status} is not described`);
      assert.ok(validate(answer), `${route}: ${JSON.stringify(validate.errors)} in ${JSON.stringify(answer)}`);
      return response.status;
    };
    const page = await camera.browse();
    assert.equal(await ask('/api/status', 'get'), 200);
    assert.equal(await ask('/api/join', 'post', '{"name": "Nobody", "key": "short"}'), 400);
    assert.equal(await ask('/api/join', 'post', '[]'), 400);
    assert.equal(await ask('/api/join', 'post', JSON.stringify({ name: 'x'.repeat(3000) })), 413);
    assert.equal(await ask('/api/join', 'post', '{"name": "Nobody", "key": "long enough"}'), 202);
    assert.equal(await ask('/api/join', 'post', '{"name": "Nobody", "key": "long enough"}'), 409);
    assert.equal(await ask('/api/status', 'get'), 200);
    await page.getByText('The network was not heard').waitFor();
    assert.equal(await ask('/api/status', 'get'), 200);
    assert.equal(await ask('/api/survey', 'post', '{}'), 202);
    await join(page, 'Office', 'correct horse');
    await heading(page, 'Dome 2 is connected');
    assert.equal(await ask('/api/status', 'get'), 200);
  },

  async 'is fit for everybody, on small screens, in light and dark'(camera) {
    camera.program.kill('SIGTERM');
    await camera.ended;
    camera.write('air', neighbours.map(airLine).join(''));
    await camera.start('--shown', '20');
    camera.write('pace', '0.4');
    for (const colorScheme of ['light', 'dark']) {
      for (const viewport of [phone.viewport, { width: 320, height: 640 }]) {
        const name = (what) => `setup-${what}-${colorScheme}-${viewport.width}`;
        const page = await camera.browse({ ...phone, viewport, colorScheme });
        const check = async (what) => {
          await checkAccess(page, name(what));
          assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), name(what) + ': too wide');
          await picture(page, name(what));
        };
        await network(page, 'Office').waitFor();
        await check('list');
        await network(page, 'Office').click();
        await page.getByLabel('Key', { exact: true }).fill('wrong horse');
        await check('form');
        await page.getByRole('button', { name: 'Connect', exact: true }).click();
        await heading(page, 'Connecting to Office');
        await page.getByText('Asking to be let in').first().waitFor();
        await check('progress');
        await page.getByText('The key is not right').waitFor();
        await check('failure');
        await page.getByRole('button', { name: 'Search again' }).click();
        await page.getByRole('button', { name: 'Close' }).click();
        await network(page, 'Visitors').click();
        await check('open');
        await network(page, 'Another network').click();
        await check('other');
        await page.close();
      }
    }
    const pages = [];
    for (const colorScheme of ['light', 'dark']) pages.push(await camera.browse({ ...phone, colorScheme }));
    await join(pages[0], 'Office', 'correct horse');
    for (const page of pages) {
      await heading(page, 'Dome 2 is connected');
      await checkAccess(page, 'done');
      await picture(page, 'setup-done-' + (page === pages[0] ? 'light' : 'dark') + '-390');
    }
  },
};

async function setUp(camera) {
  const page = await camera.browse();
  await join(page, /^Office\s*,/, 'not the key'); // not "Office 5G"
  await page.getByText('Office was not joined').waitFor();
  await page.getByLabel('Key', { exact: true }).fill('correct horse battery');
  await page.getByRole('button', { name: 'Connect', exact: true }).click();
  await heading(page, /is connected$/);
  await page.getByRole('link', { name: '192.168.7.20' }).waitFor();
  assert.match(camera.read('camera/etc/camera.conf'), /^ssid = .*Office/m);
}

const cameras = [
  ...Object.entries(tests).map(([name, run]) => [name, run, () => new Camera()]),
  ...['mtk', 'realtek'].map((family) => [`sets up the virtual camera, ${family}`, setUp,
    () => new VirtualCamera(`${family}-first-boot.json`)]),
];

const only = process.env.ONLY;
const chromiumProcess = await chromium.launch({ executablePath: process.env.CHROMIUM || '/usr/bin/chromium',
  args: ['--no-sandbox'] });
let failed = 0;
for (const [name, run, makeCamera] of cameras) {
  if (only && !name.includes(only)) continue;
  const camera = makeCamera();
  await camera.start();
  try {
    await run(camera);
    assert.deepEqual(camera.complaints.filter((text) => !/ERR_(CONNECTION|INCOMPLETE)/.test(text)), [], 'console');
    console.log('passed: ' + name);
  } catch (error) {
    ++failed;
    console.log(`FAILED: ${name}\n${error.stack}\n${camera.log}`);
    if (images) await camera.browsers[0]?.pages()[0]?.screenshot({ path: path.join(images, 'failed.png') });
  } finally {
    await camera.stop();
  }
}
await chromiumProcess.close();
console.log(failed ? `${failed} failed` : 'all passed');
process.exit(failed ? 1 : 0);
