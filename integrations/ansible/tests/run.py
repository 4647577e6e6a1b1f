#!/usr/bin/env python3
"""Runs the collection with ansible-playbook against simulated recorders. Ends with 77 when there is no Ansible.

Usage: run.py PARAVUE-CTL MANY-RECORDERS [COUNT]
"""

import os
import re
import shutil
import stat
import subprocess
import sys
import tempfile

COLLECTION = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SKIPPED = 77
PASSWORD = 'admin'
SECRET = 'Quokka-7731'

PLAY = '''
- hosts: all
  gather_facts: false
  vars:
    common: &common
      password: "%s"
      program: "{{ control_program }}"
      timeout: 60
  tasks:
''' % PASSWORD

SETTINGS = '''
    - paravue.recorder.paravue_settings:
        <<: *common
        values:
          net/untitled/DNS1: 10.0.0.2
          disk/untitled/KEEP_DAYS: 31
          streams/common/name: "Recorder {{ inventory_hostname }}"
          net/untitled/DDNS_PASSWORD: %s
''' % SECRET

FACTS = '''
    - paravue.recorder.paravue_facts:
        <<: *common
        patterns: [net/untitled/DNS1, 'streams/common/*', net/untitled/DDNS_PASSWORD]
    - ansible.builtin.assert:
        that:
          - paravue['values']['net/untitled/DNS1'] == '10.0.0.2'
          - paravue['values']['streams/common/name'] == 'Recorder ' + inventory_hostname
          - paravue['values']['net/untitled/DDNS_PASSWORD'] is none
'''

SET_TIME = '''
    - paravue.recorder.paravue_function:
        <<: *common
        function: set_time_current
'''

RESTART = '''
    - paravue.recorder.paravue_function:
        <<: *common
        function: soft_reboot
      ignore_errors: true
'''

LOGIN_IN_ADDRESS = '''
    - paravue.recorder.paravue_facts:
        <<: *common
        address: "admin:%s@127.0.0.1"
      ignore_errors: true
''' % SECRET

BAD_VALUES = '''
    - paravue.recorder.paravue_settings:
        <<: *common
        values: {%s}
      ignore_errors: true
'''

# Values that are refused, and with which words.
REFUSED = (
    ('net/untitled/DHCP: on', 'write it in quotes'),
    ('net/untitled/IP: 300.1.1.1', 'is not allowed'),
    (r'net/untitled/IP: "10.0.0.1\nnet/untitled/DNS1=1.1.1.1"', 'several lines'),
    ('net: x', 'no FILE/SECTION/KEY'),
    ('net/untitled/NONE: ' + SECRET, 'has no value'),
)


class Failure(Exception):
    pass


def expect(condition, message):
    if not condition:
        raise Failure(message)


class Playbooks:
    """Runs playbooks with the recorders of an inventory."""

    def __init__(self, folder, control_program, count):
        self.folder = folder
        self.count = count
        # Keeps the arguments of all runs.
        self.arguments = os.path.join(folder, 'arguments')
        self.program = os.path.join(folder, 'paravue-ctl')
        with open(self.program, 'w', encoding='utf-8') as script:
            script.write('#!/bin/sh\nprintf "%%s\\n" "$*" >> "%s"\nexec "%s" "$@"\n'
                         % (self.arguments, control_program))
        os.chmod(self.program, stat.S_IRWXU)
        collections = os.path.join(folder, 'collections', 'ansible_collections', 'paravue')
        os.makedirs(collections)
        shutil.copytree(COLLECTION, os.path.join(collections, 'recorder'))
        self.environment = dict(
            os.environ, HOME=folder, ANSIBLE_COLLECTIONS_PATH=os.path.join(folder, 'collections'),
            ANSIBLE_LOCAL_TEMP=os.path.join(folder, 'tmp'), ANSIBLE_NOCOLOR='1', ANSIBLE_FORKS='5',
            PARAVUE_DATA_HOME=folder, XDG_DATA_HOME=folder, XDG_RUNTIME_DIR=folder, LC_ALL='C.UTF-8')

    def run(self, playbook, *options, limit='all'):
        path = os.path.join(self.folder, 'playbook.yml')
        with open(path, 'w', encoding='utf-8') as file:
            file.write(playbook)
        ended = subprocess.run(
            ['ansible-playbook', '-i', os.path.join(self.folder, 'hosts.ini'), '-l', limit,
             '-e', 'control_program=' + self.program, *options, path],
            env=self.environment, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, encoding='utf-8', check=False)
        return ended.returncode, ended.stdout

    def changes(self, tasks, *options):
        """How many tasks have changed something on each host, and the output."""
        code, output = self.run(PLAY + tasks, *options)
        expect(code == 0, output)
        changed = [int(number) for number in re.findall(r'^r\d+ +: ok=\d+ +changed=(\d+)', output, re.M)]
        expect(len(changed) == self.count, output)
        return changed, output

    def all_arguments(self):
        with open(self.arguments, encoding='utf-8') as file:
            return file.read()

    def check_documentation(self):
        names = ['paravue.recorder.paravue_' + name for name in ('settings', 'function', 'facts')]
        ended = subprocess.run(['ansible-doc', *names], env=self.environment, stdin=subprocess.DEVNULL,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding='utf-8', check=False)
        expect(ended.returncode == 0 and ended.stdout.count('password_file') >= len(names), ended.stdout)


def check(plays):
    plays.check_documentation()
    changed, shown = plays.changes(SETTINGS + SET_TIME, '--check', '--diff', '-vvv')
    expect(set(changed) == {2}, shown)
    expect('-net/untitled/DNS1=192.168.10.1\n' in shown and '+net/untitled/DNS1=10.0.0.2\n' in shown, shown)
    expect('+net/untitled/DDNS_PASSWORD=******** (changed)\n' in shown, shown)
    expect('run 127.0.0.1' not in plays.all_arguments(), 'a function has run in check mode')

    changed, output = plays.changes(SETTINGS, '--diff', '-vvv')
    expect(set(changed) == {1}, output)
    expect('"confirmed": true' in output and '"net/untitled/DNS1": "10.0.0.2"' in output, output)
    shown += output

    changed, output = plays.changes(SETTINGS + FACTS, '--diff', '-vvv')
    expect(set(changed) == {0}, output)
    shown += output
    changed, output = plays.changes(SET_TIME, '-vvv')
    expect(set(changed) == {1}, output)
    shown += output

    tasks = RESTART + LOGIN_IN_ADDRESS + ''.join(BAD_VALUES % values for values, _unused in REFUSED)
    _unused, output = plays.run(PLAY + tasks, '-vvv', limit='r1')
    for message in ['--yes', 'address has a login'] + [message for _unused, message in REFUSED]:
        expect(message in output, 'no "%s" in\n%s' % (message, output))
    expect('ignored=%d' % (2 + len(REFUSED)) in output, output)
    shown += output

    expect(SECRET not in shown, 'the secret is shown')
    expect('"password": "%s"' % PASSWORD not in shown, 'the password is shown')
    arguments = plays.all_arguments()
    expect('set 127.0.0.1:' in arguments and SECRET not in arguments, arguments)
    expect(PASSWORD not in arguments, arguments)


def main():
    if not shutil.which('ansible-playbook'):
        print('skipped: ansible-playbook is not installed; "scripts/install-packages check" installs it')
        return SKIPPED
    control_program, recorders_program = sys.argv[1:3]
    count = int(sys.argv[3]) if len(sys.argv) > 3 else 20
    with tempfile.TemporaryDirectory() as folder:
        with subprocess.Popen([recorders_program, str(count), os.path.join(folder, 'data')],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding='utf-8') as recorders:
            hosts = ''
            name = ''
            for line in recorders.stdout:
                if line.startswith('['):
                    name = line.strip('[]\n')
                elif line.startswith('address'):
                    hosts += '%s ansible_host=%s\n' % (name, line.split()[-1])
                else:
                    break
            with open(os.path.join(folder, 'hosts.ini'), 'w', encoding='utf-8') as file:
                file.write(hosts)
            try:
                check(Playbooks(folder, os.path.abspath(control_program), count))
            except Failure as failure:
                print('FAILED: %s' % failure)
                return 1
            finally:
                recorders.stdin.close()
    print('%d recorders: passed' % count)
    return 0


if __name__ == '__main__':
    sys.exit(main())
