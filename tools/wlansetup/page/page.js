'use strict';
(() => {
  const texts = JSON.parse(document.getElementById('texts').textContent);
  const find = (id) => document.getElementById(id);
  const fill = (text, values) => text.replace(/\{(\w+)\}/g, (whole, name) => name in values ? values[name] : whole);
  const say = (place, text) => { if (place.textContent !== text) place.textContent = text; };
  const show = (place, shown) => { place.hidden = !shown; };
  const bytes = (text) => new TextEncoder().encode(text).length;

  let status = null;      // the camera's, as last told
  let view = '';          // the section that is shown
  let chosen = null;      // ssid_hex of the network whose form is open; '' for one that is typed
  let told = '';          // the failure that was shown and closed
  let changing = false;   // a connected camera is asked to change
  let tried = false;      // something was under way since
  let own = false;        // this page asked for what is under way
  let source = null;
  let retry = 0;
  let clock = 0;

  // The form moves to the network that is chosen, with what was typed.
  const form = find('form').content.firstElementChild;
  const field = (id) => form.querySelector('#' + id);

  const unbroken = (text) => text.length > 16 ? text : text.replace(/ /g, '\u00a0');
  const model = () => unbroken((status && status.camera.model) || texts.camera);
  const network = (hex) => status.networks.find((one) => one.ssid_hex === hex);
  const busy = () => ['joining', 'pressing', 'joining_obtained', 'storing', 'changing', 'keeping'].includes(status.state);
  const connected = () => ['connected', 'watching', 'looking_around'].includes(status.state);

  function reason(answer) {
    let word = answer.reason;
    if (word === 'wrong_key' && answer.certain === false) word = 'wrong_key_maybe';
    return fill(texts.reasons[word] || texts.reasons.other, { seconds: answer.seconds || 1 });
  }

  // Networks

  const drawing = 'http://www.w3.org/2000/svg';

  function shape(parent, kind, attributes) {
    const made = document.createElementNS(drawing, kind);
    for (const name of Object.keys(attributes)) made.setAttribute(name, attributes[name]);
    parent.append(made);
    return made;
  }

  function drawBars(button, bars) {
    const svg = shape(button, 'svg', { class: 'glyph bars', viewBox: '0 0 24 24', 'aria-hidden': 'true' });
    for (let i = 0; i < 4; i++)
      shape(svg, 'rect', { x: 2 + i * 5.5, y: 15 - i * 4, width: 3.5, height: 6 + i * 4, rx: 1, class: i < bars ? 'on' : '' });
  }

  function drawButton(button, name, hint, bars, locked) {
    button.replaceChildren();
    if (bars === null) shape(shape(button, 'svg', { class: 'glyph', viewBox: '0 0 24 24', 'aria-hidden': 'true' }), 'path', { d: 'M12 5v14M5 12h14' });
    else drawBars(button, bars);
    const label = document.createElement('span');
    label.className = 'name';
    label.textContent = name;
    button.append(label);
    const more = document.createElement(bars === null ? 'small' : 'span');
    if (bars !== null) more.className = 'unseen';
    more.textContent = (bars === null ? '' : ', ') + hint;
    (bars === null ? label : button).append(more);
    if (locked) shape(shape(button, 'svg', { class: 'lock', viewBox: '0 0 24 24', 'aria-hidden': 'true' }), 'path', { d: 'M7 10V7a5 5 0 0 1 10 0v3h1a1 1 0 0 1 1 1v9a1 1 0 0 1-1 1H6a1 1 0 0 1-1-1v-9a1 1 0 0 1 1-1zm2 0h6V7a3 3 0 0 0-6 0z' });
  }

  const items = new Map(); // ssid_hex, '' for the typed one: its list item

  function itemFor(hex) {
    if (!items.has(hex)) {
      const item = document.createElement('li');
      const button = document.createElement('button');
      button.type = 'button';
      button.className = 'network';
      button.setAttribute('aria-expanded', 'false');
      button.addEventListener('click', () => choose(chosen === hex ? null : hex, true));
      item.append(button);
      items.set(hex, item);
    }
    return items.get(hex);
  }

  // Items stay where they are while a form is open: nothing moves under a finger or loses what is typed.
  function drawNetworks() {
    const list = find('networks');
    const present = new Set(['']);
    for (const one of status.networks) {
      present.add(one.ssid_hex);
      const item = itemFor(one.ssid_hex);
      const key = [one.name, one.bars, one.locked].join();
      if (item.dataset.drawn !== key) {
        item.dataset.drawn = key;
        drawButton(item.firstElementChild, one.name, texts.strength[one.bars] + ', ' + (one.locked ? texts.locked : texts.open), one.bars, one.locked);
      }
    }
    const other = itemFor('');
    if (!other.dataset.drawn) {
      other.dataset.drawn = 'yes';
      drawButton(other.firstElementChild, texts.other, texts.other_hint, null, false);
    }
    for (const [hex, item] of items) {
      if (!present.has(hex) && hex !== chosen) {
        item.remove();
        items.delete(hex);
      }
    }
    const order = status.networks.map((one) => items.get(one.ssid_hex));
    if (!other.parentNode) list.append(other);
    if (chosen !== null) {
      for (const item of order) if (!item.parentNode) list.insertBefore(item, other);
    } else if (order.some((item, i) => list.children[i] !== item)) {
      const focused = document.activeElement;
      list.replaceChildren(...order, other);
      if (list.contains(focused)) focused.focus();
    }
  }

  // The form

  function choose(hex, focus) {
    const from = chosen;
    if (from !== null && items.has(from)) items.get(from).firstElementChild.setAttribute('aria-expanded', 'false');
    if (hex !== from) { field('key').value = ''; say(field('problem'), ''); }
    chosen = hex;
    if (hex === null) {
      form.remove();
      drawNetworks(); // with what was kept from moving
      if (from !== null) (items.has(from) ? items.get(from).firstElementChild : find('heading')).focus();
      return;
    }
    const item = itemFor(hex);
    item.append(form);
    item.firstElementChild.setAttribute('aria-expanded', 'true');
    prepare();
    if (focus) (hex === '' ? field('name') : wantsKey() ? field('key') : field('join')).focus();
  }

  const wantsKey = () => chosen === '' || !network(chosen) || network(chosen).locked;

  function prepare() {
    const one = network(chosen);
    show(field('name-field'), chosen === '');
    show(field('key-field'), wantsKey());
    show(field('code-field'), status.code_needed);
    show(field('warning'), chosen !== '' && !wantsKey());
    say(field('warning'), texts.open_warning);
    say(form.querySelector('label[for=key]'), chosen === '' ? texts.key_optional : texts.key);
    form.setAttribute('aria-label', chosen === '' ? texts.other_heading : one ? one.name : '');
    hintKey();
  }

  // What is wrong with the key, as a word of the reasons; '' when nothing is.
  function keyProblem() {
    const key = field('key').value;
    const length = bytes(key);
    const one = network(chosen);
    const hex = /^[0-9a-fA-F]*$/.test(key);
    if (!wantsKey() || (chosen === '' && !length)) return '';
    if (!length) return 'key_missing';
    if (/[\u0000-\u001f\u007f]/.test(key)) return 'key_characters';
    if (one && one.wep) return [5, 13].includes(length) || ([10, 26].includes(length) && hex) ? '' : 'key_length_wep';
    return (length >= 8 && length <= 63) || (length === 64 && hex) ? '' : 'key_length';
  }

  function hintKey() {
    const length = bytes(field('key').value);
    const one = network(chosen);
    const good = length > 0 && !keyProblem();
    const hint = field('key-hint');
    hint.classList.toggle('good', good);
    say(hint, good ? texts.key_good
      : one && one.wep ? texts.key_hint_wep
      : !length ? texts.key_hint
      : length < 8 ? fill(texts.key_short, { count: length })
      : length > 63 ? texts.key_long : texts.reasons.key_characters);
    if (!keyProblem()) field('key').removeAttribute('aria-invalid');
  }

  function complain(place, word, values) {
    say(field('problem'), fill(texts.reasons[word] || texts.reasons.other, values || {}));
    if (place) {
      place.setAttribute('aria-invalid', 'true');
      place.focus();
    }
  }

  function fail(name, text) {
    say(find('failure').firstElementChild, name ? fill(texts.failed_heading, { name }) : texts.failed_any);
    say(find('failure').lastElementChild, text);
    show(find('failure'), true);
  }

  async function order(what, body) {
    if (status.code_needed) body.code = field('code').value;
    try {
      const answer = await fetch('/api/' + what, {
        method: 'POST', headers: { 'Content-Type': 'application/json' }, body: JSON.stringify(body)
      });
      return await answer.json();
    } catch (error) {
      return { ok: false, reason: 'unreachable' };
    }
  }

  async function join() {
    const name = field('name').value;
    for (const id of ['name', 'key', 'code']) field(id).removeAttribute('aria-invalid');
    say(field('problem'), '');
    if (chosen === '' && !name) return complain(field('name'), 'name_missing');
    if (chosen === '' && bytes(name) > 32) return complain(field('name'), 'name_length');
    const wrong = keyProblem();
    if (wrong) return complain(field('key'), wrong);
    const body = { key: wantsKey() ? field('key').value : '' };
    if (chosen === '') body.name = name; else body.ssid_hex = chosen;
    field('join').disabled = true;
    own = true;
    told = '';
    const answer = await order('join', body);
    field('join').disabled = false;
    if (answer.ok) return;
    own = false;
    const place = /^code/.test(answer.reason) ? field('code') : /^key/.test(answer.reason) ? field('key') : null;
    complain(place, answer.reason, { seconds: answer.seconds || 1 });
  }

  // Views

  function enter(next) {
    if (view === next) return;
    const first = view === '';
    view = next;
    for (const id of ['choose', 'progress', 'done']) show(find(id), id === next);
    if (!first) { find('heading').focus({ preventScroll: true }); scrollTo(0, 0); }
  }

  function drawChoose() {
    const looking = ['surveying', 'looking_around'].includes(status.state);
    say(find('heading'), fill(texts.heading, { model: model() }));
    say(find('searching'), looking ? texts.searching : status.networks.length ? '' : texts.none);
    show(find('searching'), find('searching').textContent !== '');
    find('again').disabled = looking;
    show(find('wps-card'), status.wps && !connected());
    const outcome = status.outcome;
    const failed = outcome && !outcome.ok && told !== JSON.stringify(outcome);
    show(find('failure'), failed);
    show(find('intro'), !failed);
    if (failed) {
      fail(attemptName(), reason(outcome));
      if (chosen === null && !own && status.attempt.ssid_hex) {
        const known = network(status.attempt.ssid_hex);
        if (known) choose(known.ssid_hex, false);
      }
    }
    drawNetworks();
    if (chosen !== null) prepare();
    enter('choose');
    if (failed && own) {
      own = false;
      if (chosen !== null) (wantsKey() ? field('key') : field('join')).focus();
    }
  }

  function attemptName() {
    const hex = status.attempt.ssid_hex;
    const one = network(hex);
    if (one) return one.name;
    const named = status.attempt.events.map((event) => event.ssid).filter(Boolean).pop();
    return named || (hex && hex === hexOf(field('name').value) ? field('name').value : '');
  }

  const hexOf = (text) => Array.from(new TextEncoder().encode(text), (byte) => byte.toString(16).padStart(2, '0')).join('');

  function drawProgress() {
    const pressing = status.state === 'pressing';
    const name = attemptName() || status.ssid || '…';
    say(find('heading'), pressing ? texts.progress_wps : fill(texts.progress_heading, { name }));
    const seen = [];
    const events = status.attempt.events.map((event) => event.event === 'heard' ? null : event).filter(Boolean);
    for (const event of [{ event: 'start' }].concat(events, ['storing', 'keeping'].includes(status.state) ? [{ event: 'storing' }] : [])) {
      const text = texts.steps[event.event];
      if (text && seen[seen.length - 1] !== fill(text, event)) seen.push(fill(text, event));
    }
    const list = find('steps');
    seen.slice(-5).forEach((text, i) => {
      const item = list.children[i] || list.appendChild(document.createElement('li'));
      say(item, text);
    });
    while (list.children.length > Math.min(seen.length, 5)) list.lastElementChild.remove();
    say(find('step'), seen[seen.length - 1]);
    enter('progress');
  }

  function drawDone() {
    const joined = status.joined || {};
    const name = joined.ssid || '';
    const leaving = status.state === 'leaving';
    say(find('heading'), fill(leaving ? texts.done_heading : texts.connected_heading, { model: model() }));
    say(find('done-network'), !leaving && status.cable ? texts.connected_cable : fill(texts.done_network, { name }));
    show(find('done-address'), !!joined.address);
    if (joined.address) {
      say(find('done-address').firstElementChild, texts.done_address);
      const link = find('done-address').lastElementChild;
      say(link, joined.address);
      link.href = 'http://' + joined.address + '/';
    }
    show(find('done-next'), leaving);
    const left = Math.max(0, Math.round((clock - Date.now()) / 1000));
    say(find('done-next'), left > 0 ? fill(texts.done_next, { name, seconds: left }) : fill(texts.done_gone, { name }));
    show(find('change'), connected());
    enter('done');
  }

  function draw() {
    if (!status) return;
    document.title = texts.title + ' – ' + model();
    if (busy()) tried = true;
    if (connected() && tried) {
      tried = false;
      if (status.outcome && status.outcome.ok) changing = false;
    }
    if (busy()) drawProgress();
    else if (status.state === 'leaving' || (connected() && !changing)) drawDone();
    else drawChoose();
  }

  // What the camera tells. A page that lost touch looks for the camera until it is there again.

  async function refresh() {
    try {
      status = await (await fetch('/api/status', { cache: 'no-store' })).json();
    } catch (error) {
      return lose();
    }
    if (status.closes_in !== null) clock = Date.now() + status.closes_in * 1000;
    draw();
  }

  function lose() {
    if (source) source.close();
    source = null;
    if (view !== 'done' || !status || status.state !== 'leaving') {
      const ssid = status && status.camera.ssid ? ' ' + status.camera.ssid : '';
      say(find('lost'), fill(texts.lost, { ssid }));
      show(find('lost'), true);
    } else drawDone();
    clearTimeout(retry);
    retry = setTimeout(listen, 1500);
  }

  function listen() {
    source = new EventSource('/api/events');
    source.addEventListener('state', () => {
      show(find('lost'), false);
      refresh();
    });
    source.onmessage = (message) => {
      if (!status) return;
      const event = JSON.parse(message.data);
      if (event.event === 'outcome') status.outcome = event; else status.attempt.events.push(event);
      draw();
    };
    source.onerror = lose;
  }

  // Beginning

  say(find('intro'), texts.intro);
  say(find('networks-heading'), texts.networks);
  say(find('again'), texts.search_again);
  say(find('wps').querySelector('span span'), texts.wps);
  say(find('wps').querySelector('small'), texts.wps_hint);
  say(find('progress-hint'), texts.progress_hint);
  say(find('change'), texts.change);
  say(find('heading'), fill(texts.heading, { model: texts.camera }));
  const labels = { name: texts.name, code: texts.code };
  for (const id of Object.keys(labels)) say(form.querySelector('label[for=' + id + ']'), labels[id]);
  say(field('name-hint'), texts.name_hint);
  say(field('code-hint'), texts.code_hint);
  say(field('show'), texts.show);
  say(field('join'), texts.join);
  say(field('close'), texts.cancel);
  form.addEventListener('submit', (event) => { event.preventDefault(); join(); });
  form.addEventListener('keydown', (event) => { if (event.key === 'Escape') choose(null); });
  field('key').addEventListener('input', hintKey);
  field('close').addEventListener('click', () => choose(null));
  field('show').addEventListener('click', () => {
    const shown = field('key').type === 'password';
    field('key').type = shown ? 'text' : 'password';
    field('show').setAttribute('aria-pressed', shown);
    say(field('show'), shown ? texts.hide : texts.show);
  });
  find('change').addEventListener('click', () => { changing = true; draw(); });
  find('again').addEventListener('click', async () => {
    if (status.outcome) told = JSON.stringify(status.outcome);
    const answer = await order('survey', {});
    if (!answer.ok) fail('', reason(answer));
  });
  find('wps').addEventListener('click', async () => {
    told = '';
    const answer = await order('wps', {});
    if (!answer.ok) fail('', reason(answer));
  });
  setInterval(() => { if (status && status.state === 'leaving') drawDone(); }, 1000);
  listen();
})();
